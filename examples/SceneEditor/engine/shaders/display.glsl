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

// Half a step of noise, against bands in wide gradients.
vec3 dither(vec3 c)
{
    float n = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    return c + (n - 0.5) / 255.0;
}
