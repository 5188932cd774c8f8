#pragma once

#include "Covers/Brush.h"

namespace navorin::demo::covers {

// land and sky
void dunes(Brush &b);
void waves(Brush &b);
void forest(Brush &b);
void mountains(Brush &b);
void moonLake(Brush &b);
void aurora(Brush &b);
void rain(Brush &b);
void road(Brush &b);
void mesas(Brush &b);
void clouds(Brush &b);
void galaxy(Brush &b);
void wind(Brush &b);

// ornament
void girih(Brush &b);
void mandala(Brush &b);
void tiles(Brush &b);
void kilim(Brush &b);
void ovals(Brush &b);
void arches(Brush &b);
void rose(Brush &b);
void stringArt(Brush &b);

// things
void pomegranate(Brush &b);
void tulips(Brush &b);
void skyline(Brush &b);
void neonSun(Brush &b);
void pianoKeys(Brush &b);
void cup(Brush &b);
void globe(Brush &b);
void cassette(Brush &b);
void reel(Brush &b);

// signs
void arcs(Brush &b);
void splitDisc(Brush &b);
void inkCircle(Brush &b);

} // namespace navorin::demo::covers
