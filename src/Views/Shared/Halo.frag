#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float strength;
    vec4 tone;
};

float noise(vec2 pixel)
{
    return fract(52.9829189 * fract(dot(pixel, vec2(0.06711056, 0.00583715))));
}

void main()
{
    float away = min(distance(qt_TexCoord0, vec2(0.5)) * 2.0, 1.0);
    float share = 1.0 - away * away;
    float alpha = strength * share * share * qt_Opacity;
    float dither = alpha > 0.0 ? (noise(gl_FragCoord.xy) - 0.5) / 255.0 : 0.0;
    fragColor = vec4(max(tone.rgb * alpha + dither, 0.0), alpha);
}
