// SPDX-License-Identifier: MIT
#pragma once

#include "model/Document.h"

#include <QImage>
#include <QList>

namespace pintalux::SelfTest {

/// Pixels per point of the sample capture.
inline constexpr double sampleScale = 2;

/// The sample capture, 1400 × 900 pixels.
QImage sampleImage();

/// Marks of every kind for the sample capture, in its pixels.
QList<Annotation> sampleAnnotations();

/// Documents that show one family of marks each, drawn over `capture`.
Document calloutScene(const QImage& capture);
Document stepScene(const QImage& capture);
Document sketchScene(const QImage& capture);

} // namespace pintalux::SelfTest
