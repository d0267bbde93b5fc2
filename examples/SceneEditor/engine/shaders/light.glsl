uniform vec4 u_light; // w 0: direction towards it, 1: position
uniform vec3 u_lightColour;
uniform bool u_isSpot;
uniform vec2 u_cone; // cosines of the angles where it ends and where it begins to fade
uniform float u_lightDistance; // metres, at which a light with a position is as bright as one without
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

vec3 towardsLight(vec3 position)
{
    return u_light.xyz - position * u_light.w;
}

// Brightness at the position, without shadows.
float reachAt(vec3 position)
{
    if (u_light.w < 0.5)
        return 1.0;
    vec3 way = towardsLight(position);
    float squared = max(dot(way, way), 1e-4);
    float reach = u_lightDistance * u_lightDistance / squared;
    // A spot light shines at the origin.
    return u_isSpot ? reach * smoothstep(u_cone.x, u_cone.y, dot(way, normalize(u_light.xyz)) * inversesqrt(squared))
                    : reach;
}

// Brightness of the floor, on the display. Only a spot light shows where its light ends; of the others the floor shows
// only the shadows.
vec3 poolAt(vec3 position)
{
    if (!u_isSpot)
        return vec3(1.0);
    float slope = max(normalize(towardsLight(position)).y, 0.0);
    return min(1.4 * sqrt(u_lightColour / 3.0 * reachAt(position) * slope), vec3(2.0));
}
