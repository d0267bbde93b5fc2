#pragma once

// The programs of SceneRenderer. All light is computed with linear colours in world space; output is sRGB.

namespace sceneeditor
{
namespace shaders
{
constexpr char version[] = "#version 330 core\n";

// What the programs share.
constexpr char common[] = R"(
uniform float u_exposure;

vec3 toDisplay(vec3 c)
{
    c *= u_exposure;
    // Colours stay as they are up to the knee; only highlights are compressed, without a visible edge.
    const float knee = 0.62;
    vec3 high = knee + (1.0 - knee) * (1.0 - exp(-(c - knee) / (1.0 - knee)));
    c = mix(c, high, step(vec3(knee), c));
    return mix(12.92 * c, 1.055 * pow(max(c, 1e-5), vec3(1.0 / 2.4)) - 0.055, step(vec3(0.0031308), c));
}

// Half a step of noise: wide gradients show no bands.
vec3 dither(vec3 c)
{
    float n = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    return c + (n - 0.5) / 255.0;
}
)";

constexpr char environment[] = R"(
uniform sampler2D u_environment;
uniform float u_environmentWidth;
uniform vec3 u_irradiance[9];

vec3 environmentAt(vec3 d, float lod)
{
    vec2 uv = vec2(atan(d.x, -d.z) / 6.2831853 + 0.5, acos(clamp(d.y, -1.0, 1.0)) / 3.1415927);
    // An explicit level: the jump of u from 1 to 0 would otherwise pick the smallest one along a line.
    return textureLod(u_environment, uv, lod).rgb;
}

vec3 irradianceAt(vec3 n)
{
    return max(vec3(0.0), u_irradiance[0]
        + u_irradiance[1] * n.y + u_irradiance[2] * n.z + u_irradiance[3] * n.x
        + u_irradiance[4] * n.x * n.y + u_irradiance[5] * n.y * n.z + u_irradiance[6] * (3.0 * n.z * n.z - 1.0)
        + u_irradiance[7] * n.x * n.z + u_irradiance[8] * (n.x * n.x - n.y * n.y));
}
)";

constexpr char shadow[] = R"(
uniform sampler2DShadow u_shadowMap;
uniform mat4 u_shadowMatrix;
uniform float u_shadowTexel; // 0 switches shadows off
uniform float u_shadowSoftness; // texels

// 1 in full light. Twelve taps on a disc, turned for each pixel; four decide whether the others are needed.
float lightAt(vec3 position)
{
    if (u_shadowTexel <= 0.0)
        return 1.0;
    vec4 p = u_shadowMatrix * vec4(position, 1.0);
    if (p.w <= 0.0)
        return 1.0;
    vec3 q = p.xyz / p.w;
    q.z = min(q.z, 1.0);
    if (any(lessThan(q.xy, vec2(-0.05))) || any(greaterThan(q.xy, vec2(1.05))))
        return 1.0;
    float angle = 6.2831853 * fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    vec2 axis = vec2(cos(angle), sin(angle)) * u_shadowTexel * u_shadowSoftness;
    vec2 side = vec2(-axis.y, axis.x);
    float sum = texture(u_shadowMap, vec3(q.xy + axis, q.z)) + texture(u_shadowMap, vec3(q.xy - axis, q.z))
        + texture(u_shadowMap, vec3(q.xy + side, q.z)) + texture(u_shadowMap, vec3(q.xy - side, q.z));
    if (sum < 0.001 || sum > 3.999)
        return sum / 4.0;
    axis = 0.5 * (axis + side);
    side = vec2(-axis.y, axis.x);
    sum += texture(u_shadowMap, vec3(q.xy + axis, q.z)) + texture(u_shadowMap, vec3(q.xy - axis, q.z))
        + texture(u_shadowMap, vec3(q.xy + side, q.z)) + texture(u_shadowMap, vec3(q.xy - side, q.z));
    axis = 0.4 * (axis + side);
    side = vec2(-axis.y, axis.x);
    sum += texture(u_shadowMap, vec3(q.xy + axis, q.z)) + texture(u_shadowMap, vec3(q.xy - axis, q.z))
        + texture(u_shadowMap, vec3(q.xy + side, q.z)) + texture(u_shadowMap, vec3(q.xy - side, q.z));
    return sum / 12.0;
}
)";

constexpr char objectVertex[] = R"(
layout(location = 0) in vec3 a_position;
layout(location = 1) in vec3 a_normal;
uniform mat4 u_model;
uniform mat4 u_viewProjection;
uniform mat3 u_normalMatrix;
uniform vec2 u_outline; // clip-space size of the outline; 0 draws the object itself
out vec3 v_position;
out vec3 v_normal;

void main()
{
    vec4 world = u_model * vec4(a_position, 1.0);
    v_position = world.xyz;
    v_normal = u_normalMatrix * a_normal;
    gl_Position = u_viewProjection * world;
    if (u_outline.x > 0.0)
    {
        vec2 direction = (u_viewProjection * vec4(v_normal, 0.0)).xy / u_outline;
        gl_Position.xy += direction / max(length(direction), 1e-6) * u_outline * gl_Position.w;
    }
}
)";

constexpr char objectFragment[] = R"(
in vec3 v_position;
in vec3 v_normal;
uniform vec3 u_eye;
uniform int u_mode; // 0 lit, 1 flat, 2 normals, 3 as it comes
uniform vec3 u_baseColour;
uniform float u_roughness;
uniform float u_metallic;
uniform vec3 u_emission;
uniform vec4 u_light; // w 0: direction towards it, 1: position
uniform vec3 u_lightColour;
uniform float u_lightDistance;
uniform float u_ambient;
uniform float u_shadowOffset; // metres along the normal against shadows of the surface on itself
out vec4 o_colour;

void main()
{
    if (u_mode == 3)
    {
        o_colour = vec4(u_baseColour, 1.0);
        return;
    }
    if (u_mode == 1)
    {
        o_colour = vec4(toDisplay(u_baseColour + u_emission), 1.0);
        return;
    }
    vec3 n = normalize(v_normal);
    vec3 v = normalize(u_eye - v_position);
    n = gl_FrontFacing ? n : -n;
    if (u_mode == 2)
    {
        o_colour = vec4(0.5 + 0.5 * n, 1.0);
        return;
    }
    float nv = clamp(dot(n, v), 0.02, 1.0);
    float alpha = max(u_roughness * u_roughness, 0.004);
    vec3 f0 = mix(vec3(0.04), u_baseColour, u_metallic);
    vec3 diffuse = u_baseColour * (1.0 - u_metallic);

    vec3 toLight = u_light.xyz - v_position * u_light.w;
    float reach = u_light.w > 0.5 ? u_lightDistance * u_lightDistance / max(dot(toLight, toLight), 1e-4) : 1.0;
    vec3 l = normalize(toLight);
    float nl = dot(n, l);
    vec3 colour = u_emission;
    if (nl > 0.0)
    {
        vec3 h = normalize(l + v);
        float nh = clamp(dot(n, h), 0.0, 1.0);
        float a2 = alpha * alpha;
        float d = nh * nh * (a2 - 1.0) + 1.0;
        float distribution = a2 / (3.1415927 * d * d);
        float visibility = 0.5 / (nl * sqrt(nv * nv * (1.0 - a2) + a2) + nv * sqrt(nl * nl * (1.0 - a2) + a2));
        vec3 fresnel = f0 + (1.0 - f0) * pow(1.0 - clamp(dot(v, h), 0.0, 1.0), 5.0);
        vec3 direct = (1.0 - fresnel) * diffuse / 3.1415927 + fresnel * min(distribution * visibility, 60.0);
        colour += direct * u_lightColour * (nl * reach * lightAt(v_position + n * u_shadowOffset));
    }

    vec3 r = reflect(-v, n);
    float lod = log2(max(1.0, u_environmentWidth * alpha * 0.35));
    vec3 mirrored = mix(environmentAt(r, lod), irradianceAt(r), smoothstep(0.45, 0.9, u_roughness));
    vec3 ambientFresnel = f0 + (max(vec3(1.0 - u_roughness), f0) - f0) * pow(1.0 - nv, 5.0);
    // The floor hides part of what a low surface facing down could see.
    float open = mix(0.55, 1.0, smoothstep(-1.0, 0.3, n.y));
    colour += u_ambient * open * (diffuse * irradianceAt(n) + ambientFresnel * mirrored);
    o_colour = vec4(dither(toDisplay(colour)), 1.0);
}
)";

constexpr char depthVertex[] = R"(
layout(location = 0) in vec3 a_position;
uniform mat4 u_matrix;
void main()
{
    gl_Position = u_matrix * vec4(a_position, 1.0);
}
)";

constexpr char depthFragment[] = R"(
void main()
{
}
)";

// One triangle over the whole view, made from the vertex number.
constexpr char backgroundVertex[] = R"(
out vec2 v_place; // -1..1
void main()
{
    v_place = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
    gl_Position = vec4(v_place, 1.0, 1.0);
}
)";

// Background, floor and objects come together in one pass with one sample per pixel: only edges of objects need more.
// The floor is a layer of shadow and lines over the background, so that it has no horizon.
constexpr char backgroundFragment[] = R"(
in vec2 v_place;
uniform sampler2D u_objects; // premultiplied
uniform vec3 u_colour; // sRGB
uniform mat4 u_toWorld;
uniform bool u_showEnvironment;
uniform vec3 u_eye;
uniform float u_ambient;
uniform float u_cell;   // metres; 0 without grid
uniform float u_extent; // metres from the centre to the edge
uniform vec3 u_lineColour;
uniform float u_darkness; // of a full shadow
uniform vec4 u_occluders[16]; // spheres that stand close to the floor: centre and radius
uniform int u_occluderCount;
out vec4 o_colour;

float lines(vec2 place, vec2 size, float width)
{
    vec2 away = abs(fract(place - 0.5) - 0.5) / size;
    vec2 line = clamp(vec2(width) - away + 0.5, 0.0, 1.0) * min(vec2(1.0), 0.35 / size);
    return max(line.x, line.y);
}

float shadeAt(vec3 position)
{
    float free = 1.0;
    for (int i = 0; i < u_occluderCount; ++i)
    {
        vec3 d = u_occluders[i].xyz - position;
        float squared = max(dot(d, d), 1e-6);
        float radius = u_occluders[i].w;
        free *= 1.0 - clamp(radius * radius / squared * abs(d.y) * inversesqrt(squared), 0.0, 1.0) * 0.75;
    }
    return 1.0 - (1.0 - u_darkness * (1.0 - lightAt(position))) * free;
}

void main()
{
    vec4 objects = texelFetch(u_objects, ivec2(gl_FragCoord.xy), 0);
    vec4 far = u_toWorld * vec4(v_place, 1.0, 1.0);
    vec3 way = normalize(far.xyz / far.w - u_eye);
    float steps = u_eye.y * way.y < 0.0 ? -u_eye.y / way.y : -1.0;
    vec3 position = u_eye + way * steps;
    vec2 size = max(fwidth(position.xz), vec2(1e-6));
    if (objects.a > 0.999)
    {
        o_colour = vec4(objects.rgb, 1.0);
        return;
    }

    vec3 colour;
    if (u_showEnvironment)
        colour = toDisplay(u_ambient * environmentAt(way, 0.0));
    else
    {
        vec2 fall = v_place * vec2(0.8, 0.7);
        colour = u_colour * mix(1.12, 0.72, clamp(dot(fall, fall), 0.0, 1.0));
    }
    if (steps > 0.0)
    {
        float inside = 1.0 - smoothstep(0.55, 1.0, length(position.xz) / u_extent);
        inside *= smoothstep(0.0, 0.12, abs(way.y));
        if (u_darkness > 0.0 && u_eye.y > 0.0)
            colour *= 1.0 - shadeAt(position);
        if (u_cell > 0.0 && inside > 0.0)
        {
            float line = max(0.17 * lines(position.xz / u_cell, size / u_cell, 0.5),
                             0.34 * lines(position.xz / (4.0 * u_cell), size / (4.0 * u_cell), 0.6));
            colour = mix(colour, u_lineColour, line * inside);
        }
    }
    o_colour = vec4(dither(colour * (1.0 - objects.a) + objects.rgb), 1.0);
}
)";
} // namespace shaders
} // namespace sceneeditor
