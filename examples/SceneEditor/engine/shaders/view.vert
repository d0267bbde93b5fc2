out vec2 v_place; // -1..1
void main()
{
    v_place = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
    gl_Position = vec4(v_place, 1.0, 1.0);
}
