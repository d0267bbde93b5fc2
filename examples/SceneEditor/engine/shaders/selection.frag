// The box that is being drawn with the mouse.
uniform vec4 u_area; // pixels from the bottom left: left, bottom, right, top
uniform vec3 u_colour; // sRGB
uniform float u_width; // pixels of its edge
out vec4 o_colour;

void main()
{
    vec2 inside = min(gl_FragCoord.xy - u_area.xy, u_area.zw - gl_FragCoord.xy);
    float away = min(inside.x, inside.y);
    if (away < 0.0)
        discard;
    o_colour = vec4(u_colour, away < u_width ? 0.95 : 0.12);
}
