in vec2 v_place;
uniform sampler2D u_objects; // premultiplied
uniform vec3 u_colour; // sRGB
uniform mat4 u_toWorld;
uniform bool u_showEnvironment;
uniform vec3 u_eye;
uniform float u_ambient;
uniform float u_cell;   // metres; 0 without grid
uniform float u_pixel;  // pixels of the view along each edge of a drawn pixel
uniform float u_extent; // metres from the centre to the edge
uniform vec3 u_lineColour;
uniform float u_darkness; // of a full shadow
uniform vec4 u_occluders[16]; // spheres that stand close to the floor: centre and radius
uniform int u_occluderCount;
out vec4 o_colour;

float lines(vec2 place, vec2 size, float width)
{
    vec2 away = abs(fract(place - 0.5) - 0.5) / size;
    vec2 line = clamp(vec2(width / u_pixel) - away + 0.5, 0.0, 1.0) * min(vec2(1.0), 0.35 * u_pixel / size);
    return max(line.x, line.y);
}

vec3 shadeAt(vec3 position, float horizon)
{
    float free = 1.0;
    for (int i = 0; i < u_occluderCount; ++i)
    {
        vec3 d = u_occluders[i].xyz - position;
        float squared = max(dot(d, d), 1e-6);
        float radius = u_occluders[i].w;
        free *= 1.0 - clamp(radius * radius / squared * abs(d.y) * inversesqrt(squared), 0.0, 1.0) * 0.75;
    }
    // Far away, the pool of a spot light fades into the unlit floor, so that no horizon shows.
    vec3 pool = mix(vec3(1.0), poolAt(position), horizon);
    return free * (1.0 - u_darkness * (1.0 - lightAt(position) * pool));
}

vec4 objectsAt(ivec2 offset)
{
    ivec2 place = clamp(ivec2(gl_FragCoord.xy) + offset, ivec2(0), textureSize(u_objects, 0) - 1);
    return texelFetch(u_objects, place, 0);
}

void main()
{
    vec4 objects = objectsAt(ivec2(0));
    if (u_pixel > 1.0) // a draft has one sample for each pixel, and steps along every edge
        objects = 0.5 * objects + 0.125 * (objectsAt(ivec2(-1, 0)) + objectsAt(ivec2(1, 0)) +
                                           objectsAt(ivec2(0, -1)) + objectsAt(ivec2(0, 1)));
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
            colour *= shadeAt(position, smoothstep(0.0, 0.3, abs(way.y)));
        if (u_cell > 0.0 && inside > 0.0)
        {
            float line = max(0.17 * lines(position.xz / u_cell, size / u_cell, 0.5),
                             0.34 * lines(position.xz / (4.0 * u_cell), size / (4.0 * u_cell), 0.6));
            colour = mix(colour, u_lineColour, line * inside);
        }
    }
    o_colour = vec4(dither(colour * (1.0 - objects.a) + objects.rgb), 1.0);
}
