// SPDX-License-Identifier: MIT
#pragma once

class QPainterPath;

namespace pintalux {

/// Degrees to turn `path` by before it is stroked with round joins; the stroke is then turned back. Mostly 0.
///
/// The toolkit's stroker takes a join from 359° to 1° for one that turns by 358° and lays a whole disc over
/// the stroke. Where both have their edge, its pixels count twice and lose their anti-aliasing: a notch at
/// the crest of every curve made of short lines. Turned, no join of the path (or as few as possible) lies
/// across 0°.
double turnForRoundJoins(const QPainterPath& path);

} // namespace pintalux
