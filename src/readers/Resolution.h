// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Dots per inch, from what formats state in other units. An inch is 2.54 cm by definition, and no
// factor but a whole one is exact: a single division gives 39.0144 for 1536 dots a metre, where a
// product with 0.0254 gives 39.01439999999999 in a name.

/// So many dots on so many centimetres.
inline double dpiOfCentimetres(double dots, double centimetres = 1)
{
    return dots * 254 / (centimetres * 100);
}

/// So many dots on so many metres.
inline double dpiOfMetres(double dots, double metres = 1)
{
    return dots * 254 / (metres * 10000);
}
