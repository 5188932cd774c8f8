#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float veil;
    float reach;
    vec2 extent;
    vec2 lamp;
    vec4 tone;
    vec4 glow;
    vec4 ground;
};

// Interleaved gradient noise: even, without a pattern that the eye would find.
float noise(vec2 pixel)
{
    return fract(52.9829189 * fract(dot(pixel, vec2(0.06711056, 0.00583715))));
}

// The rings that a lamp behind the record throws: fainter the farther out.
float rings(float away)
{
    float light = 0.0;
    for (int i = 0; i < 5; ++i) {
        float radius = reach * (1.18 + 0.16 * float(i));
        float line = 1.0 - smoothstep(0.0, 1.1, abs(away - radius));
        light += line * 0.055 * (1.0 - float(i) / 5.0);
    }
    return light;
}

void main()
{
    vec2 point = qt_TexCoord0 * extent;
    float away = distance(point, lamp);
    // Wide and faint over the window, narrow and strong around the record.
    float wide = exp(-away * away / (2.0 * 2.0 * 2.6 * 2.6 * reach * reach / 4.0));
    float near = exp(-away * away / (2.0 * 1.25 * 1.25 * reach * reach));
    vec3 color = mix(ground.rgb, tone.rgb, 0.07 + 0.26 * wide);
    color = mix(color, glow.rgb, 0.46 * near);
    // Under the bar at the top, small white texts must stay readable.
    float top = 1.0 - smoothstep(0.0, 150.0, point.y);
    color = mix(color, ground.rgb, veil * (0.35 + 0.65 * top));
    color += glow.rgb * rings(away) * (1.0 - veil * 0.5);
    color += (noise(gl_FragCoord.xy) - 0.5) / 255.0;
    fragColor = vec4(color, 1.0) * qt_Opacity;
}
