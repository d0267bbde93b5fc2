#!/usr/bin/env python3
"""Writes the meshes and the environment picture of the example scenes into the directory of this script.

Needs nothing but Python and gives the same bytes on every run."""

import math
import pathlib
import struct
import zlib

HERE = pathlib.Path(__file__).resolve().parent


def write_obj(name, vertices, faces):
    with open(HERE / name, "w", newline="\n") as out:
        for v in vertices:
            out.write("v %.4f %.4f %.4f\n" % v)
        for f in faces:
            out.write("f " + " ".join(str(i + 1) for i in f) + "\n")


def write_ply(name, vertices, faces):
    with open(HERE / name, "w", newline="\n") as out:
        out.write("ply\nformat ascii 1.0\nelement vertex %d\n" % len(vertices))
        out.write("property float x\nproperty float y\nproperty float z\n")
        out.write("element face %d\nproperty list uchar int vertex_indices\nend_header\n" % len(faces))
        for v in vertices:
            out.write("%.5f %.5f %.5f\n" % v)
        for f in faces:
            out.write("%d %s\n" % (len(f), " ".join(map(str, f))))


def on_the_floor(vertices):
    lowest = min(v[1] for v in vertices)
    return [(x, y - lowest, z) for x, y, z in vertices]


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    length = math.sqrt(sum(c * c for c in a))
    return tuple(c / length for c in a)


def torus_knot(p=2, q=3, steps=132, sides=12, tube=0.19):
    def curve(t):
        r = 0.62 + 0.27 * math.cos(q * t)
        # Upright, so that it stands on the floor.
        return (r * math.cos(p * t), r * math.sin(p * t), 0.34 * math.sin(q * t))

    vertices, faces = [], []
    for i in range(steps):
        t = 2 * math.pi * i / steps
        here, ahead = curve(t), curve(t + 1e-3)
        forward = unit(tuple(b - a for a, b in zip(here, ahead)))
        # A frame from the position: it closes by itself after a full turn.
        side = unit(cross(forward, (here[0], here[1], 0.0)))
        up = cross(side, forward)
        for k in range(sides):
            a = 2 * math.pi * k / sides
            c, s = tube * math.cos(a), tube * math.sin(a)
            vertices.append(tuple(here[d] + c * up[d] + s * side[d] for d in range(3)))
    for i in range(steps):
        for k in range(sides):
            a, b = i * sides + k, i * sides + (k + 1) % sides
            c, d = (i + 1) % steps * sides + (k + 1) % sides, (i + 1) % steps * sides + k
            faces.append((a, b, c, d))
    return on_the_floor(vertices), faces


def lathe(outline, sides=48):
    """Turns (radius, height) points about the Y axis; points with radius 0 close the body."""
    vertices, faces, rings = [], [], []
    for radius, height in outline:
        if radius == 0.0:
            rings.append([len(vertices)] * sides)
            vertices.append((0.0, height, 0.0))
            continue
        rings.append(list(range(len(vertices), len(vertices) + sides)))
        for k in range(sides):
            a = 2 * math.pi * k / sides
            vertices.append((radius * math.sin(a), height, radius * math.cos(a)))
    for low, high in zip(rings, rings[1:]):
        for k in range(sides):
            corners = [low[k], low[(k + 1) % sides], high[(k + 1) % sides], high[k]]
            face = tuple(dict.fromkeys(corners))
            if len(face) > 2:
                faces.append(face)
    return vertices, faces


def smooth(points, steps):
    """A curve through the points, each piece a cubic with the slopes of its neighbours."""
    out = []
    for i in range(len(points) - 1):
        a, b = points[max(i - 1, 0)], points[i]
        c, d = points[i + 1], points[min(i + 2, len(points) - 1)]
        for s in range(steps):
            t = s / steps
            out.append(tuple(
                b[n] + 0.5 * t * (c[n] - a[n] + t * (2 * a[n] - 5 * b[n] + 4 * c[n] - d[n]
                                                      + t * (3 * (b[n] - c[n]) + d[n] - a[n])))
                for n in range(2)))
    return out + [points[-1]]


def vase():
    outside = [(0.34, 0.0), (0.39, 0.03), (0.52, 0.30), (0.60, 0.62), (0.52, 0.95), (0.30, 1.24), (0.22, 1.42),
               (0.25, 1.56), (0.33, 1.66)]
    rim = [(0.335, 1.675), (0.325, 1.68), (0.31, 1.67)]
    inside = [(0.225, 1.55), (0.195, 1.42), (0.27, 1.24), (0.45, 0.95), (0.5, 0.62), (0.4, 0.2)]
    outline = [(0.0, 0.0)] + smooth(outside, 3) + rim + smooth(inside, 2) + [(0.0, 0.12)]
    return lathe(outline)


def pedestal(radius=0.85, height=0.22, bevel=0.035, corner=4):
    outline = [(0.0, 0.0), (radius - 0.01, 0.0), (radius, 0.01)]
    for k in range(corner + 1):
        a = 0.5 * math.pi * k / corner
        outline.append((radius - bevel + bevel * math.cos(a), height - bevel + bevel * math.sin(a)))
    outline.append((0.0, height))
    return lathe(outline, 72)


def gem(sides=10):
    """A cut stone: table, crown, girdle and pavilion."""
    def ring(count, radius, height, turn=0.0):
        start = len(vertices)
        for k in range(count):
            a = 2 * math.pi * (k + turn) / count
            vertices.append((radius * math.sin(a), height, radius * math.cos(a)))
        return [start + k for k in range(count)]

    vertices, faces = [], []
    table = ring(sides, 0.36, 0.92)
    star = ring(sides, 0.52, 0.84, 0.5)
    upper = ring(sides * 2, 0.70, 0.64)
    lower = ring(sides * 2, 0.70, 0.59)
    point = len(vertices)
    vertices.append((0.0, 0.0, 0.0))
    faces.append(tuple(table))
    for k in range(sides):
        n = (k + 1) % sides
        u = [upper[(2 * k + i) % (2 * sides)] for i in range(3)]
        faces.append((table[k], star[k], table[n]))
        faces.append((star[k], u[0], u[1]))
        faces.append((star[k], u[1], u[2]))
        faces.append((table[n], star[k], u[2]))
        faces.append((table[n], u[2], star[n]))
    for k in range(2 * sides):
        n = (k + 1) % (2 * sides)
        faces.append((lower[k], lower[n], upper[n], upper[k]))
    waist = ring(sides, 0.34, 0.27, 0.5)
    for k in range(sides):
        n = (k + 1) % sides
        low = [lower[(2 * k + i) % (2 * sides)] for i in range(3)]
        faces.append((low[0], waist[k], low[1]))
        faces.append((low[1], waist[k], low[2]))
        faces.append((waist[k], waist[n], low[2]))
        faces.append((point, waist[n], waist[k]))
    return vertices, faces


def rounded_cube(half=0.5, bevel=0.14, steps=10):
    """Points of a cube's surface drawn back into the inner cube and pushed out again by the bevel."""
    index, vertices, faces = {}, [], []

    def vertex(p):
        inner = tuple(max(-half + bevel, min(half - bevel, c)) for c in p)
        out = unit(tuple(a - b for a, b in zip(p, inner)))
        key = tuple(round(a + bevel * b, 6) for a, b in zip(inner, out))
        if key not in index:
            index[key] = len(vertices)
            vertices.append(key)
        return index[key]

    def place(i):
        # Closer together in the bevel, where the surface turns.
        t = 2 * i / steps - 1
        return half * (1.5 * t - 0.5 * t ** 3)

    for axis in range(3):
        for sign in (-1, 1):
            def point(i, k):
                p = [0.0, 0.0, 0.0]
                p[axis], p[(axis + 1) % 3], p[(axis + 2) % 3] = sign * half, place(i), place(k)
                return vertex(tuple(p))
            for i in range(steps):
                for k in range(steps):
                    face = [point(i, k), point(i + 1, k), point(i + 1, k + 1), point(i, k + 1)]
                    faces.append(tuple(face if sign > 0 else face[::-1]))
    return on_the_floor(vertices), faces


def step(low, high, x):
    t = max(0.0, min(1.0, (x - low) / (high - low)))
    return t * t * (3 - 2 * t)


def studio(width=512, height=256):
    """Soft boxes in a dim room over a darker floor."""
    # Azimuth and elevation of the middle, half width and height (degrees), colour.
    boxes = [(-45, 42, 26, 17, (1.0, 0.97, 0.92)), (75, 30, 13, 30, (0.80, 0.90, 1.0)),
             (165, 38, 30, 10, (0.92, 0.92, 0.96)), (-125, 12, 7, 34, (1.0, 0.88, 0.78))]
    rows = bytearray()
    for y in range(height):
        elevation = 90 - 180 * (y + 0.5) / height
        up = step(-8, 90, elevation)
        base = [0.20 + 0.26 * up, 0.21 + 0.27 * up, 0.235 + 0.29 * up]
        floor = 1 - step(-30, 2, elevation)
        base = [c * (1 - floor) + f * floor for c, f in zip(base, (0.17, 0.165, 0.165))]
        line = []
        for x in range(width):
                # As the renderer maps it: azimuth 0 at the edges, -180 and 180 in the middle, +X to the right of it.
            azimuth = 180 - 360 * (x + 0.5) / width
            colour = list(base)
            for middle, rise, half_width, half_height, tint in boxes:
                turn = abs((azimuth - middle + 180) % 360 - 180)
                inside = (1 - step(half_width * 0.82, half_width * 1.12, turn)) * (
                    1 - step(half_height * 0.82, half_height * 1.12, abs(elevation - rise)))
                colour = [c * (1 - inside) + t * inside for c, t in zip(colour, tint)]
            line += [int(round(255 * max(0.0, min(1.0, c)))) for c in colour]
        # Each byte as the difference to the one a pixel to the left: flat areas compress to nothing.
        rows.append(1)
        rows += bytes((line[i] - (line[i - 3] if i >= 3 else 0)) & 255 for i in range(len(line)))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    with open(HERE / "studio.png", "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                  + chunk(b"sRGB", b"\0") + chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


if __name__ == "__main__":
    write_obj("knot.obj", *torus_knot())
    write_obj("vase.obj", *vase())
    write_obj("pedestal.obj", *pedestal())
    write_obj("cube.obj", *rounded_cube())
    write_ply("gem.ply", *gem())
    studio()
