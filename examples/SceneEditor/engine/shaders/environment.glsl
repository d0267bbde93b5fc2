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
