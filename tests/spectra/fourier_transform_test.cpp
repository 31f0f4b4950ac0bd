#include "spectra/fourier_transform.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/literal_spectrum.hpp"
#include "support/roads.hpp"

namespace vialto::test {

TEST(FourierTransform, ErrorGrowsWithTheLogarithmOfTheLengthAtMost) {
    for (std::size_t log2_n = 1; log2_n <= 17; ++log2_n) {
        const std::size_t n = std::size_t{1} << log2_n;
        const std::vector<float> x = random_road(n, 1.0, 7);
        std::vector<float> re(n / 2 + 1);
        std::vector<float> im(n / 2 + 1);
        fourier_transform(x, re, im);
        const auto exact = literal_fourier({x.begin(), x.end()});
        double error = 0.0;
        double energy = 0.0;
        for (std::size_t j = 0; j <= n / 2; ++j) {
            const auto bin = exact[j] * (2.0 / static_cast<double>(n));
            error += std::norm(std::complex<double>(std::complex<float>(re[j], im[j])) - bin);
            energy += std::norm(bin);
        }
        constexpr auto ulp = static_cast<double>(std::numeric_limits<float>::epsilon());
        EXPECT_LT(std::sqrt(error / energy), 0.3 * ulp * (1.0 + static_cast<double>(log2_n))) << n;
    }
}

} // namespace vialto::test
