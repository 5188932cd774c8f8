#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float veil;
    float light;
    vec2 extent;
    vec4 tone;
    vec4 ground;
};

// The wash runs through .55, .25 and .10 from top to bottom; its knee in the middle is rounded off, which is
// what a blur of it would do.
float wash(float y)
{
    float knee = 30.0 / max(extent.y, 1.0);
    float upper = mix(0.55, 0.25, y * 2.0);
    float lower = mix(0.25, 0.10, y * 2.0 - 1.0);
    return mix(upper, lower, smoothstep(0.5 - 2.0 * knee, 0.5 + 2.0 * knee, y));
}

// A light on the bottom edge, from .30 within 40 to nothing at 480.
float glow(vec2 point)
{
    float away = distance(point, vec2(extent.x * 0.5, extent.y));
    float share = 1.0 - clamp((away - 40.0) / 440.0, 0.0, 1.0);
    return 0.30 * share * share * (3.0 - 2.0 * share);
}

// Interleaved gradient noise: even, without a pattern that the eye would find.
float noise(vec2 pixel)
{
    return fract(52.9829189 * fract(dot(pixel, vec2(0.06711056, 0.00583715))));
}

void main()
{
    vec2 point = qt_TexCoord0 * extent;
    vec3 color = mix(ground.rgb, tone.rgb, wash(qt_TexCoord0.y) * light);
    color = mix(color, tone.rgb, glow(point) * light);
    color = mix(color, ground.rgb, veil * light);
    color += (noise(gl_FragCoord.xy) - 0.5) / 255.0;
    fragColor = vec4(color, 1.0) * qt_Opacity;
}
