// SPDX-License-Identifier: MIT

// Precompiled for every test.
#pragma once

#include <QImage>
#include <QPainter>
#include <QString>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
