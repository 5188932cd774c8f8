#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float radius;
    vec2 extent;
};
layout(binding = 1) uniform sampler2D source;

void main()
{
    vec2 corner = abs(qt_TexCoord0 - 0.5) * extent - 0.5 * extent + radius;
    float outside = length(max(corner, 0.0)) - radius;
    fragColor = texture(source, qt_TexCoord0) * clamp(0.5 - outside, 0.0, 1.0) * qt_Opacity;
}
