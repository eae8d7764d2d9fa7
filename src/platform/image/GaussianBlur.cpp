// SPDX-License-Identifier: MIT
#include "platform/image/GaussianBlur.h"

#include "platform/base/Parallel.h"
#include "platform/base/Vectorized.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

// A Gaussian of σ up to 4 pixels is convolved directly, columns then rows. A larger one is made of three
// smooth steps whose variances add up to σ²: the picture is reduced to every f-th pixel with a tent of half
// width f, the small picture is convolved, and it is enlarged again with cubic B-splines. As f is at most
// half of σ, the three together differ from a true Gaussian by far less than a level, and what the reduction
// folds over stays below one level even for the stripes that suit it worst.
//
// All steps are weighted sums of rows, columns being rows moved sideways, so that the time goes into three
// short loops.

namespace pintalux {

namespace {

using Bytes = SamplePlane<const std::uint8_t>;

/// Samples that fit the first-level cache together with the rows that are added to them.
constexpr int tileLength = 1024;
/// Fewest samples for which a second thread pays.
constexpr int samplesPerThread = 200'000;
/// Where a kernel is cut off, in σ: what is left out weighs 0.05 %.
constexpr double kernelReach = 3.5;
/// The largest reduction, as a part of σ.
constexpr double reductionPerSigma = 0.5;
/// Reduced samples kept beyond each edge; the outermost of them sees nothing of the picture.
constexpr int margin = 2;

// ---- the three loops

PINTALUX_VECTORIZED
void addFourRows(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c, const std::uint8_t* d,
    const float* weights, float* __restrict sums, int length)
{
    const float wa = weights[0], wb = weights[1], wc = weights[2], wd = weights[3];
    for (int i = 0; i < length; ++i)
        sums[i] += (wa * a[i] + wb * b[i]) + (wc * c[i] + wd * d[i]);
}

PINTALUX_VECTORIZED
void addFourRows(const float* a, const float* b, const float* c, const float* d, const float* weights,
    float* __restrict sums, int length)
{
    const float wa = weights[0], wb = weights[1], wc = weights[2], wd = weights[3];
    for (int i = 0; i < length; ++i)
        sums[i] += (wa * a[i] + wb * b[i]) + (wc * c[i] + wd * d[i]);
}

PINTALUX_VECTORIZED
void roundToBytes(const float* values, std::uint8_t* __restrict bytes, int length)
{
    for (int i = 0; i < length; ++i)
        // NOLINTNEXTLINE(bugprone-incorrect-roundings): no value is negative, and rounding so is quick
        bytes[i] = static_cast<std::uint8_t>(static_cast<int>(values[i] + 0.5F));
}

/// sums[i] = Σ weights[j] · rows[j][i]. The lists have the same length, a multiple of four.
template <typename Sample>
void weightedSum(
    const std::vector<const Sample*>& rows, const std::vector<float>& weights, float* sums, int length)
{
    for (int start = 0; start < length; start += tileLength) {
        const int count = std::min(tileLength, length - start);
        std::fill_n(sums + start, count, 0.F);
        for (std::size_t j = 0; j < rows.size(); j += 4)
            addFourRows(rows[j] + start, rows[j + 1] + start, rows[j + 2] + start, rows[j + 3] + start,
                &weights[j], sums + start, count);
    }
}

// ---- kernels

/// Weights of consecutive samples, with zeros up to a multiple of four.
struct Kernel {
    int first; ///< the offset of the first weight's sample
    int reach; ///< the offset of the last weight that is not padding
    std::vector<float> weights;
};

Kernel makeKernel(int first, const std::vector<double>& weights)
{
    double total = 0;
    for (const double weight : weights)
        total += weight;
    Kernel kernel{first, first + static_cast<int>(weights.size()) - 1, {}};
    for (const double weight : weights)
        kernel.weights.push_back(static_cast<float>(weight / total));
    kernel.weights.resize((weights.size() + 3) / 4 * 4, 0.F);
    return kernel;
}

Kernel gaussianKernel(double sigma)
{
    const int reach = std::max(1, static_cast<int>(std::ceil(kernelReach * sigma)));
    std::vector<double> weights;
    for (int offset = -reach; offset <= reach; ++offset)
        weights.push_back(std::exp(-0.5 * offset * offset / (sigma * sigma)));
    return makeKernel(-reach, weights);
}

/// How reduced sample k sees the pixels around pixel k · factor.
Kernel tentKernel(int factor)
{
    const double centre = (factor - 1) / 2.0;
    const int first = static_cast<int>(std::floor(centre - factor)) + 1;
    std::vector<double> weights;
    for (int offset = first; offset < centre + factor; ++offset)
        weights.push_back(1 - std::abs(offset - centre) / factor);
    return makeKernel(first, weights);
}

double variance(const Kernel& kernel, double centre)
{
    double sum = 0;
    for (std::size_t i = 0; i < kernel.weights.size(); ++i) {
        const double distance = kernel.first + static_cast<double>(i) - centre;
        sum += kernel.weights[i] * distance * distance;
    }
    return sum;
}

/// Weights of the four reduced samples around a point `t` (0 … 1) beyond the second of them.
std::array<double, 4> splineWeights(double t)
{
    const double u = 1 - t;
    return {u * u * u / 6, (4 - 6 * t * t + 3 * t * t * t) / 6, (4 - 6 * u * u + 3 * u * u * u) / 6,
        t * t * t / 6};
}

// ---- planes of numbers

struct FloatPlane {
    FloatPlane(int width, int height)
        : width(width)
        , height(height)
        , values(std::size_t(width) * std::size_t(height))
    {
    }

    float* row(int y) { return values.data() + std::size_t(y) * std::size_t(width); }
    const float* row(int y) const { return values.data() + std::size_t(y) * std::size_t(width); }

    int width;
    int height;
    std::vector<float> values;
};

/// Weighted sums of a plane's rows; rows beyond the edges hold zeros.
template <typename Plane, typename Sample> class RowSums {
public:
    RowSums(const Plane& plane, const Kernel& kernel)
        : plane(plane)
        , kernel(kernel)
        , zeros(std::size_t(plane.width))
        , rows(kernel.weights.size())
    {
    }

    /// The sum around row `y`, which may lie outside the plane.
    void sum(int y, float* sums)
    {
        for (std::size_t j = 0; j < rows.size(); ++j)
            rows[j] = row(y + kernel.first + static_cast<int>(j));
        weightedSum(rows, kernel.weights, sums, plane.width);
    }

private:
    const Sample* row(int y) const { return y < 0 || y >= plane.height ? zeros.data() : plane.row(y); }

    const Plane& plane;
    const Kernel& kernel;
    std::vector<Sample> zeros;
    std::vector<const Sample*> rows;
};

/// A row of numbers with zeros beyond both ends for what a kernel reaches.
class PaddedRow {
public:
    PaddedRow(int width, int before, int after)
        : before(before)
        , values(std::size_t(before + width + after))
    {
    }

    float* data() { return at(0); }
    float* at(int x) { return values.data() + std::ptrdiff_t(before + x); }

private:
    int before;
    std::vector<float> values;
};

/// Convolves columns and then rows, row by row: `store(y, sums)` receives the finished ones.
template <typename Plane, typename Sample, typename Store>
void convolve(const Plane& plane, const Kernel& kernel, int first, int last, const Store& store)
{
    const int reach = -kernel.first;
    RowSums<Plane, Sample> columns(plane, kernel);
    PaddedRow padded(plane.width, reach, reach + 4);
    std::vector<const float*> shifted;
    for (std::size_t j = 0; j < kernel.weights.size(); ++j)
        shifted.push_back(padded.at(kernel.first + static_cast<int>(j)));
    std::vector<float> sums(std::size_t(plane.width));
    for (int y = first; y < last; ++y) {
        columns.sum(y, padded.data());
        weightedSum(shifted, kernel.weights, sums.data(), plane.width);
        store(y, sums.data());
    }
}

int rowsPerThread(int rowLength) { return samplesPerThread / std::max(1, rowLength) + 1; }

void blurDirectly(const Bytes& source, const SamplePlane<std::uint8_t>& target, double sigma)
{
    const Kernel kernel = gaussianKernel(sigma);
    parallelRanges(source.height, rowsPerThread(source.width), [&](int first, int last) {
        convolve<Bytes, std::uint8_t>(source, kernel, first, last,
            [&](int y, const float* sums) { roundToBytes(sums, target.row(y), target.width); });
    });
}

// ---- reduction and enlargement

void reduceRow(PaddedRow& wide, const Kernel& tent, int factor, float* narrow, int narrowWidth)
{
    for (int k = 0; k < narrowWidth; ++k) {
        const float* samples = wide.at((k - margin) * factor + tent.first);
        float sum = 0;
        for (int j = 0; j <= tent.reach - tent.first; ++j)
            sum += tent.weights[std::size_t(j)] * samples[j];
        narrow[k] = sum;
    }
}

FloatPlane reduce(const Bytes& source, const Kernel& tent, int factor)
{
    const auto reduced = [&](int length) { return (length + factor - 1) / factor + 2 * margin; };
    FloatPlane plane(reduced(source.width), reduced(source.height));
    parallelRanges(plane.height, rowsPerThread(source.width * factor), [&](int first, int last) {
        RowSums<Bytes, std::uint8_t> columns(source, tent);
        PaddedRow wide(source.width, (margin + 2) * factor, (margin + 3) * factor);
        for (int k = first; k < last; ++k) {
            columns.sum((k - margin) * factor, wide.data());
            reduceRow(wide, tent, factor, plane.row(k), plane.width);
        }
    });
    return plane;
}

/// The spline weights of every pixel offset within a reduced sample's `factor` pixels, and which four samples
/// they belong to.
struct Enlargement {
    explicit Enlargement(int factor)
        : factor(factor)
    {
        for (int phase = 0; phase < factor; ++phase) {
            const double position = (phase - (factor - 1) / 2.0) / factor; // in samples, from this one
            const double whole = std::floor(position);
            before.push_back(static_cast<int>(whole) - 1);
            const auto exact = splineWeights(position - whole);
            auto& phaseWeights = weights.emplace_back();
            std::transform(exact.begin(), exact.end(), phaseWeights.begin(),
                [](double weight) { return static_cast<float>(weight); });
        }
    }

    /// The first of the four samples that make pixel `x`, as an index into the reduced plane.
    int firstSample(int x) const { return x / factor + margin + before[std::size_t(x % factor)]; }
    const float* weightsOf(int x) const { return weights[std::size_t(x % factor)].data(); }

    int factor;
    std::vector<int> before;
    std::vector<std::array<float, 4>> weights;
};

void enlargeRow(const float* narrow, const Enlargement& enlargement, float* wide, int width)
{
    for (int x = 0; x < width; ++x) {
        const float* samples = narrow + enlargement.firstSample(x);
        const float* weights = enlargement.weightsOf(x);
        wide[x] = weights[0] * samples[0] + weights[1] * samples[1] + weights[2] * samples[2]
            + weights[3] * samples[3];
    }
}

void enlarge(const FloatPlane& plane, int factor, const SamplePlane<std::uint8_t>& target)
{
    const Enlargement enlargement(factor);
    parallelRanges(target.height, rowsPerThread(target.width), [&](int first, int last) {
        FloatPlane wide(target.width, 4); // reduced row k at k % 4
        int ready = enlargement.firstSample(first) - 1;
        std::vector<const float*> rows(4);
        std::vector<float> weights(4);
        std::array<float, tileLength> sums{};
        for (int y = first; y < last; ++y) {
            const int sample = enlargement.firstSample(y);
            while (ready < sample + 3) {
                ++ready;
                enlargeRow(plane.row(ready), enlargement, wide.row(ready % 4), target.width);
            }
            std::copy_n(enlargement.weightsOf(y), 4, weights.begin());
            for (int start = 0; start < target.width; start += tileLength) {
                const int length = std::min(tileLength, target.width - start);
                for (int j = 0; j < 4; ++j)
                    rows[std::size_t(j)] = wide.row((sample + j) % 4) + start;
                weightedSum(rows, weights, sums.data(), length);
                roundToBytes(sums.data(), target.row(y) + start, length);
            }
        }
    });
}

void blurReduced(const Bytes& source, const SamplePlane<std::uint8_t>& target, double sigma, int factor)
{
    const Kernel tent = tentKernel(factor);
    const double splineVariance = factor * factor / 3.0;
    const double rest = sigma * sigma - variance(tent, (factor - 1) / 2.0) - splineVariance;
    const FloatPlane reduced = reduce(source, tent, factor);
    FloatPlane blurred(reduced.width, reduced.height);
    const Kernel kernel = gaussianKernel(std::sqrt(rest) / factor);
    parallelRanges(reduced.height, rowsPerThread(reduced.width), [&](int first, int last) {
        convolve<FloatPlane, float>(reduced, kernel, first, last,
            [&](int y, const float* sums) { std::copy_n(sums, blurred.width, blurred.row(y)); });
    });
    enlarge(blurred, factor, target);
}

} // namespace

void gaussianBlur(
    const SamplePlane<const std::uint8_t>& source, const SamplePlane<std::uint8_t>& target, double sigma)
{
    if (!(sigma >= 0.2)) {
        for (int y = 0; y < source.height; ++y)
            std::memcpy(target.row(y), source.row(y), std::size_t(source.width));
        return;
    }
    const int factor = static_cast<int>(std::min(sigma, 1e4) * reductionPerSigma);
    if (factor < 2)
        blurDirectly(source, target, sigma);
    else
        blurReduced(source, target, sigma, factor);
}

} // namespace pintalux
