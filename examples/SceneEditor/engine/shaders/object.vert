layout(location = 0) in vec3 a_position;
layout(location = 1) in vec3 a_normal;
layout(location = 2) in vec2 a_place;
uniform mat4 u_model;
uniform mat4 u_viewProjection;
uniform mat3 u_normalMatrix;
uniform vec2 u_outline; // clip-space size of the outline; 0 draws the object itself
out vec3 v_position;
out vec3 v_normal;
out vec2 v_place; // for textures.glsl

void main()
{
    vec4 world = u_model * vec4(a_position, 1.0);
    v_position = world.xyz;
    v_normal = u_normalMatrix * a_normal;
    v_place = a_place;
    gl_Position = u_viewProjection * world;
    if (u_outline.x > 0.0)
    {
        vec2 direction = (u_viewProjection * vec4(v_normal, 0.0)).xy / u_outline;
        gl_Position.xy += direction / max(length(direction), 1e-6) * u_outline * gl_Position.w;
    }
}
