// Colour arithmetic: hue/saturation/brightness conversion, brightness changes, blending and the
// grey of a colour. Hue, saturation and brightness each run from 0 to 240 and are packed as
// hue | saturation << 8 | brightness << 16. Results are exact to the bit.
#pragma once
#include "kvkit_api.h"

// Converts the COLORREF at `rgb` to a packed HSB value at `hsb`. 0 on success, 1 for a null
// pointer. Greys get hue 0; a negative hue (red largest, blue above green) is stored as hue + 16.
KVKIT_API int KVKIT_CALL RGBToHSB(unsigned long* const rgb, unsigned long* hsb);
// Converts the packed HSB value at `hsb` to a COLORREF at `rgb`. 0 on success, 1 when a component
// exceeds 240 or a grey carries the no-hue value 160 (the output is then not written).
KVKIT_API int KVKIT_CALL HSBToRGB(unsigned long* const hsb, unsigned long* rgb);
// The colour with its brightness moved by `delta`, kept within 0..240.
KVKIT_API unsigned long KVKIT_CALL AdjustColorBrightness(unsigned long colour, int delta);
// from + (to - from) x fraction per channel, truncated; the fraction is kept within 0..1.
KVKIT_API unsigned long KVKIT_CALL BlendColors(unsigned long from, unsigned long to,
                                               double fraction);
// The grey (max + min) / 2 of the channels, as a COLORREF.
KVKIT_API unsigned long KVKIT_CALL GreyscaleCOLORREF(unsigned long colour);
