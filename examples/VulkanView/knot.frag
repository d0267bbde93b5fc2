#version 450

layout(push_constant) uniform View
{
    mat4 toClip;
    vec4 eye;
    vec4 light;
    vec4 colour;
};
layout(location = 0) in vec3 worldPosition;
layout(location = 1) in vec3 worldNormal;
layout(location = 0) out vec4 pixel;

void main()
{
    vec3 normal = normalize(worldNormal);
    vec3 halfway = normalize(light.xyz + normalize(eye.xyz - worldPosition));
    float diffuse = max(dot(normal, light.xyz), 0.0);
    float specular = diffuse > 0.0 ? pow(max(dot(normal, halfway), 0.0), 40.0) : 0.0;
    pixel = vec4(colour.rgb * (0.35 + 0.65 * diffuse) + 0.4 * specular, 1.0);
}
