// The material at the place being drawn: the same everywhere. With pictures, textures.glsl takes its place.
uniform vec3 u_baseColour;
uniform float u_roughness;
uniform float u_metallic;
uniform vec3 u_emission;

vec3 baseColourHere()
{
    return u_baseColour;
}

float roughnessHere()
{
    return u_roughness;
}

float metallicHere()
{
    return u_metallic;
}

vec3 emissionHere()
{
    return u_emission;
}

vec3 normalHere(vec3 normal, vec3 position)
{
    return normal;
}
