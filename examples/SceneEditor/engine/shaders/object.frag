in vec3 v_position;
in vec3 v_normal;
uniform vec3 u_eye;
uniform int u_mode; // 0 lit, 1 flat, 2 normals, 3 base colour only
uniform float u_ambient;
uniform float u_shadowOffset; // metres along the normal, against a surface shadowing itself
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
        o_colour = vec4(toDisplay(baseColourHere() + emissionHere()), 1.0);
        return;
    }
    vec3 n = normalize(v_normal);
    vec3 v = normalize(u_eye - v_position);
    n = normalHere(gl_FrontFacing ? n : -n, v_position);
    if (u_mode == 2)
    {
        o_colour = vec4(0.5 + 0.5 * n, 1.0);
        return;
    }
    vec3 baseColour = baseColourHere();
    float roughness = roughnessHere();
    float metallic = metallicHere();
    float nv = clamp(dot(n, v), 0.02, 1.0);
    float alpha = max(roughness * roughness, 0.004);
    vec3 f0 = mix(vec3(0.04), baseColour, metallic);
    vec3 diffuse = baseColour * (1.0 - metallic);

    vec3 l = normalize(towardsLight(v_position));
    float nl = dot(n, l);
    vec3 colour = emissionHere();
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
        colour += direct * u_lightColour * (nl * reachAt(v_position) * lightAt(v_position + n * u_shadowOffset));
    }

    vec3 r = reflect(-v, n);
    float lod = log2(max(1.0, u_environmentWidth * alpha * 0.35));
    vec3 mirrored = mix(environmentAt(r, lod), irradianceAt(r), smoothstep(0.45, 0.9, roughness));
    vec3 ambientFresnel = f0 + (max(vec3(1.0 - roughness), f0) - f0) * pow(1.0 - nv, 5.0);
    // The floor hides part of what a low surface facing down could see.
    float open = mix(0.55, 1.0, smoothstep(-1.0, 0.3, n.y));
    colour += u_ambient * open * (diffuse * irradianceAt(n) + ambientFresnel * mirrored);
    o_colour = vec4(dither(toDisplay(colour)), 1.0);
}
