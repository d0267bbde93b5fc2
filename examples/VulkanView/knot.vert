#version 450

layout(push_constant) uniform View
{
    mat4 toClip;
    vec4 eye;
    vec4 light;
    vec4 colour;
};
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 0) out vec3 worldPosition;
layout(location = 1) out vec3 worldNormal;

void main()
{
    worldPosition = position;
    worldNormal = normal;
    gl_Position = toClip * vec4(position, 1.0);
}
