// Like material.glsl, for a material with pictures. Missing ones are white.
in vec2 v_place; // on the pictures; 0, 0 is their lower left
uniform vec3 u_baseColour;
uniform float u_roughness;
uniform float u_metallic;
uniform vec3 u_emission;
uniform sampler2D u_baseColourImage;
uniform sampler2D u_metallicRoughnessImage; // roughness in green, metallic in blue
uniform sampler2D u_emissionImage;
uniform sampler2D u_normalImage;
uniform bool u_hasNormalImage;

// Pictures begin at the top.
vec3 imageHere(sampler2D image)
{
    return texture(image, vec2(v_place.x, 1.0 - v_place.y)).rgb;
}

vec3 baseColourHere()
{
    return u_baseColour * imageHere(u_baseColourImage);
}

float roughnessHere()
{
    return u_roughness * imageHere(u_metallicRoughnessImage).g;
}

float metallicHere()
{
    return u_metallic * imageHere(u_metallicRoughnessImage).b;
}

vec3 emissionHere()
{
    return u_emission * imageHere(u_emissionImage);
}

// Meshes have no tangents: the picture's axes follow from how place and position change over the screen.
vec3 normalHere(vec3 normal, vec3 position)
{
    if (!u_hasNormalImage)
        return normal;
    vec3 across = cross(dFdy(position), normal);
    vec3 down = cross(normal, dFdx(position));
    vec3 tangent = across * dFdx(v_place.x) + down * dFdy(v_place.x);
    vec3 bitangent = across * dFdx(v_place.y) + down * dFdy(v_place.y);
    float scale = inversesqrt(max(max(dot(tangent, tangent), dot(bitangent, bitangent)), 1e-20));
    vec3 bent = imageHere(u_normalImage) * 2.0 - 1.0;
    return normalize((tangent * bent.x + bitangent * bent.y) * scale + normal * bent.z);
}
