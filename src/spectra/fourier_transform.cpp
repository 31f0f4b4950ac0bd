#include "spectra/fourier_transform.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

#include "numeric/vector_width.hpp"

namespace vialto {

namespace {

// Columns or rows that are transformed side by side: a cache line of floats.
constexpr std::size_t lanes = 16;

template <class Number>
struct Complex {
    Number re;
    Number im;
};

// exp(-2 pi i k / n), exact at the quarters of the circle. n is a power of 2 up to 2^24.
Complex<double> unit_root(std::size_t k, std::size_t n) {
    const std::size_t quarters = 4 * (k % n);
    const double angle =
        0.5 * std::numbers::pi * static_cast<double>(quarters % n) / static_cast<double>(n);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    switch (quarters / n) {
    case 0:
        return {c, -s};
    case 1:
        return {-s, -c};
    case 2:
        return {-c, s};
    default:
        return {s, c};
    }
}

// Sixteen numbers on the unit circle that go round, each by its own step. They turn in 64-bit, so
// that a run of 2^18 steps leaves each within a thousandth of a float32 unit in the last place.
class Rotation {
public:
    void set(std::size_t lane, Complex<double> start, Complex<double> step) {
        re_[lane] = start.re;
        im_[lane] = start.im;
        step_re_[lane] = step.re;
        step_im_[lane] = step.im;
    }

    void turn() {
        for (std::size_t c = 0; c < lanes; ++c) {
            const double re = re_[c] * step_re_[c] - im_[c] * step_im_[c];
            const double im = re_[c] * step_im_[c] + im_[c] * step_re_[c];
            re_[c] = re;
            im_[c] = im;
        }
    }

    [[nodiscard]] Complex<float> at(std::size_t lane) const {
        return {static_cast<float>(re_[lane]), static_cast<float>(im_[lane])};
    }

private:
    using Lanes = std::array<double, lanes>;
    Lanes re_{};
    Lanes im_{};
    Lanes step_re_{};
    Lanes step_im_{};
};

// A row is sixteen complex numbers, one of each column: their real parts, then their imaginary
// ones.
constexpr std::size_t row_size = 2 * lanes;

Complex<float> at(const float* row, std::size_t lane) {
    return {row[lane], row[lanes + lane]};
}

void put(float* row, std::size_t lane, Complex<float> value) {
    row[lane] = value.re;
    row[lanes + lane] = value.im;
}

Complex<float> sum(Complex<float> a, Complex<float> b) {
    return {a.re + b.re, a.im + b.im};
}

Complex<float> difference(Complex<float> a, Complex<float> b) {
    return {a.re - b.re, a.im - b.im};
}

Complex<float> product(Complex<float> a, Complex<float> b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

Complex<float> conjugate(Complex<float> a) {
    return {a.re, -a.im};
}

// -i times a.
Complex<float> quarter_turn(Complex<float> a) {
    return {a.im, -a.re};
}

// The transform of length 4.
struct FourBins {
    FourBins(Complex<float> a, Complex<float> b, Complex<float> c, Complex<float> d)
        : bin0(sum(sum(a, c), sum(b, d))),
          bin1(sum(difference(a, c), quarter_turn(difference(b, d)))),
          bin2(difference(sum(a, c), sum(b, d))),
          bin3(difference(difference(a, c), quarter_turn(difference(b, d)))) {}

    Complex<float> bin0;
    Complex<float> bin1;
    Complex<float> bin2;
    Complex<float> bin3;
};

// Factors of the bins 1 to 3 between a stage and the next one.
using Roots = std::array<Complex<float>, 3>;

// The loops over the lanes of a row become vector instructions because the rows cannot overlap.
inline void fourfold(float* __restrict a, float* __restrict b, float* __restrict c,
                     float* __restrict d, const Roots& roots) {
    const auto [root1, root2, root3] = roots;
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const FourBins bins(at(a, lane), at(b, lane), at(c, lane), at(d, lane));
        put(a, lane, bins.bin0);
        put(b, lane, product(bins.bin1, root1));
        put(c, lane, product(bins.bin2, root2));
        put(d, lane, product(bins.bin3, root3));
    }
}

inline void last_fourfold(float* __restrict a, float* __restrict b, float* __restrict c,
                          float* __restrict d) {
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const FourBins bins(at(a, lane), at(b, lane), at(c, lane), at(d, lane));
        put(a, lane, bins.bin0);
        put(b, lane, bins.bin1);
        put(c, lane, bins.bin2);
        put(d, lane, bins.bin3);
    }
}

inline void last_twofold(float* __restrict a, float* __restrict b) {
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const Complex<float> bin0 = sum(at(a, lane), at(b, lane));
        put(b, lane, difference(at(a, lane), at(b, lane)));
        put(a, lane, bin0);
    }
}

// The transform of sixteen columns side by side, in place, for one length. Decimation in frequency,
// in steps of 4 and, for a length that is no power of 4, a last step of 2.
class ColumnTransform {
public:
    explicit ColumnTransform(std::size_t length)
        : length_(length), roots_(length), row_of_(length) {
        for (std::size_t k = 0; k < length; ++k) {
            const Complex<double> root = unit_root(k, length);
            roots_[k] = {static_cast<float>(root.re), static_cast<float>(root.im)};
            row_of_[k] = reversed(k);
        }
    }

    [[nodiscard]] std::size_t length() const { return length_; }

    // Where the transform leaves bin k.
    [[nodiscard]] std::size_t row_of(std::size_t k) const { return row_of_[k]; }

    // rows: `length` of them.
    VIALTO_WIDE_VECTORS void run(float* rows) const {
        std::size_t block = length_;
        for (; block > 4; block /= 4) {
            run_stage(rows, block);
        }
        float* const end = rows + length_ * row_size;
        for (float* row = rows; block == 4 && row < end; row += 4 * row_size) {
            last_fourfold(row, row + row_size, row + 2 * row_size, row + 3 * row_size);
        }
        for (float* row = rows; block == 2 && row < end; row += 2 * row_size) {
            last_twofold(row, row + row_size);
        }
    }

private:
    void run_stage(float* rows, std::size_t block) const {
        const std::size_t quarter = block / 4;
        const std::size_t next = quarter * row_size;
        for (std::size_t first = 0; first < length_; first += block) {
            for (std::size_t i = 0; i < quarter; ++i) {
                const std::size_t k = i * (length_ / block);
                float* row = rows + (first + i) * row_size;
                fourfold(row, row + next, row + 2 * next, row + 3 * next,
                         {roots_[k], roots_[2 * k], roots_[3 * k]});
            }
        }
    }

    // The digits of k in the steps of the transform, turned round.
    [[nodiscard]] std::size_t reversed(std::size_t k) const {
        std::size_t row = 0;
        for (std::size_t block = length_; block > 1;) {
            const std::size_t radix = std::min<std::size_t>(block, 4);
            block /= radix;
            row += k % radix * block;
            k /= radix;
        }
        return row;
    }

    std::size_t length_;
    std::vector<Complex<float>> roots_;
    std::vector<std::size_t> row_of_;
};

// The h numbers x[2j] + i x[2j + 1] as a matrix, row by row, and its transform. The columns stand
// in blocks of sixteen, each block contiguous.
class MatrixTransform {
public:
    explicit MatrixTransform(std::size_t h)
        : h_(h), down_(down_length(h)), across_(h / down_.length()),
          width_(std::min(lanes, across_.length())), height_(std::min(lanes, down_.length())) {}

    // Floats that a transform works with: the blocks of columns, and sixteen rows.
    [[nodiscard]] static std::size_t room_for(std::size_t h) {
        const std::size_t across = h / down_length(h);
        return row_size * (h / std::min(lanes, across) + across);
    }

    // The bins may take the place of the samples.
    void run(std::span<const float> x, std::span<float> room, std::span<float> re,
             std::span<float> im) const {
        float* const rows = room.data();
        for (std::size_t column = 0; column < across_.length(); column += width_) {
            float* block = rows + column / width_ * block_size();
            load_columns(x, column, block);
            down_.run(block);
            rotate(column, block);
        }
        float* const work = rows + across_.length() / width_ * block_size();
        if (height_ < lanes) {
            std::fill_n(work, across_.length() * row_size, 0.0F);
        }
        for (std::size_t row = 0; row < down_.length(); row += height_) {
            load_rows(rows, row, work);
            across_.run(work);
            store_rows(row, work, re, im);
        }
    }

private:
    [[nodiscard]] static std::size_t down_length(std::size_t h) {
        return std::size_t{1} << (std::bit_width(h | 1U) - 1) / 2;
    }

    // A block of columns.
    [[nodiscard]] std::size_t block_size() const { return down_.length() * row_size; }

    void load_columns(std::span<const float> x, std::size_t column, float* block) const {
        for (std::size_t j = 0; j < down_.length(); ++j) {
            const float* pair = x.data() + 2 * (j * across_.length() + column);
            float* row = block + j * row_size;
            if (width_ < lanes) {
                std::fill_n(row, row_size, 0.0F);
            }
            for (std::size_t c = 0; c < width_; ++c) {
                put(row, c, {pair[2 * c], pair[2 * c + 1]});
            }
        }
    }

    // Bin k of column j takes the factor exp(-2 pi i j k / h) on its way to the transform of rows.
    VIALTO_WIDE_VECTORS void rotate(std::size_t column, float* block) const {
        Rotation rotation;
        for (std::size_t c = 0; c < lanes; ++c) {
            rotation.set(c, {1.0, 0.0}, unit_root(column + c, h_));
        }
        for (std::size_t k = 0; k < down_.length(); ++k) {
            float* row = block + down_.row_of(k) * row_size;
            for (std::size_t c = 0; c < lanes; ++c) {
                put(row, c, product(at(row, c), rotation.at(c)));
            }
            rotation.turn();
        }
    }

    void load_rows(const float* rows, std::size_t row, float* work) const {
        for (std::size_t column = 0; column < across_.length(); column += width_) {
            const float* block = rows + column / width_ * block_size();
            for (std::size_t r = 0; r < height_; ++r) {
                const float* source = block + down_.row_of(row + r) * row_size;
                for (std::size_t c = 0; c < width_; ++c) {
                    put(work + (column + c) * row_size, r, at(source, c));
                }
            }
        }
    }

    void store_rows(std::size_t row, const float* work, std::span<float> re,
                    std::span<float> im) const {
        for (std::size_t k = 0; k < across_.length(); ++k) {
            const float* source = work + across_.row_of(k) * row_size;
            const auto place = static_cast<std::ptrdiff_t>(k * down_.length() + row);
            std::copy_n(source, height_, re.begin() + place);
            std::copy_n(source + lanes, height_, im.begin() + place);
        }
    }

    std::size_t h_;
    ColumnTransform down_;
    ColumnTransform across_;
    std::size_t width_;
    std::size_t height_;
};

struct PairOfBins {
    Complex<float> low;
    Complex<float> high;
};

// Bins k and h - k of the samples from bins k and h - k of the complex numbers, with
// root = exp(-2 pi i k / 2h).
PairOfBins split(Complex<float> low, Complex<float> high, Complex<float> root, float scale) {
    const Complex<float> even = sum(low, conjugate(high));
    const Complex<float> odd = product(quarter_turn(difference(low, conjugate(high))), root);
    const Complex<float> plus = sum(even, odd);
    const Complex<float> minus = conjugate(difference(even, odd));
    return {{plus.re * scale, plus.im * scale}, {minus.re * scale, minus.im * scale}};
}

// Sixteen pairs: the low bins ascend from the given place, the high ones descend.
inline void split_sixteen(float* __restrict low_re, float* __restrict low_im,
                          float* __restrict high_re, float* __restrict high_im,
                          const Rotation& rotation, float scale) {
    for (std::ptrdiff_t c = 0; c < static_cast<std::ptrdiff_t>(lanes); ++c) {
        const auto [low, high] = split({low_re[c], low_im[c]}, {high_re[-c], high_im[-c]},
                                       rotation.at(static_cast<std::size_t>(c)), scale);
        low_re[c] = low.re;
        low_im[c] = low.im;
        high_re[-c] = high.re;
        high_im[-c] = high.im;
    }
}

// From the spectrum of the h complex numbers to that of the 2h samples, in place.
VIALTO_WIDE_VECTORS void split_spectrum(std::span<float> re, std::span<float> im) {
    const std::size_t h = re.size() - 1;
    const float whole = 1.0F / static_cast<float>(h);
    const float half = 0.5F * whole;
    re[h] = (re[0] - im[0]) * whole;
    re[0] = (re[0] + im[0]) * whole;
    im[h] = 0.0F;
    im[0] = 0.0F;
    Rotation rotation;
    for (std::size_t c = 0; c < lanes; ++c) {
        rotation.set(c, unit_root(1 + c, 2 * h), unit_root(lanes, 2 * h));
    }
    std::size_t k = 1;
    for (; 2 * (k + lanes) <= h; k += lanes) {
        split_sixteen(&re[k], &im[k], &re[h - k], &im[h - k], rotation, half);
        rotation.turn();
    }
    for (; 2 * k <= h; ++k) {
        const Complex<double> root = unit_root(k, 2 * h);
        const auto [low, high] =
            split({re[k], im[k]}, {re[h - k], im[h - k]},
                  {static_cast<float>(root.re), static_cast<float>(root.im)}, half);
        re[h - k] = high.re;
        im[h - k] = high.im;
        re[k] = low.re;
        im[k] = low.im;
    }
}

} // namespace

std::size_t fourier_room(std::size_t h) {
    return h == 0 ? 0 : MatrixTransform::room_for(h);
}

void fourier_transform(std::span<float> samples, std::span<float> room) {
    const std::size_t bins = samples.size() / 2;
    const std::span<float> re = samples.first(bins);
    const std::span<float> im = samples.last(bins);
    MatrixTransform(bins - 1).run(samples, room, re, im);
    split_spectrum(re, im);
}

} // namespace vialto
