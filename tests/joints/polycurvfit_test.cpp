#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "joints/polycurvfit.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

namespace {

using Values = std::vector<double>;

// Abscissae 1.0 to 4.0 in a number of points.
Values abscissae(std::size_t count) {
    Values x(count);
    for (std::size_t i = 0; i < count; ++i) {
        x[i] = 1.0 + 3.0 * static_cast<double>(i) / static_cast<double>(count - 1);
    }
    return x;
}

// The event of a fit that fails, with the values it was to add to still as they stood.
std::string failure_of(const Values& x, const Values& y, std::optional<std::int32_t> degree) {
    reset_event();
    Values values{7.0};
    EXPECT_EQ(polycurvfit(x, y, Values{1.0}, values, degree), failure);
    EXPECT_EQ(values[0], 7.0);
    return summary_of_current_event();
}

} // namespace

TEST(PolynomialFit, GivesBackAPolynomialOfEveryDegree) {
    const Values x = abscissae(30);
    for (std::int32_t degree = 0; degree <= max_polynomial_degree; ++degree) {
        Values y;
        for (const double point : x) {
            double value = 1.0;
            for (std::int32_t k = 0; k < degree; ++k) {
                value = value * (point - 2.0) + 1.0; // 1 + (x - 2) + (x - 2)^2 + ...
            }
            y.push_back(value);
        }
        const Values at{2.0, 3.0};
        Values values{10.0, 20.0};
        ASSERT_EQ(polycurvfit(x, y, at, values, degree), success);
        EXPECT_NEAR(values[0], 10.0 + 1.0, 1e-8) << degree;
        EXPECT_NEAR(values[1], 20.0 + degree + 1, 1e-8) << degree;
    }
}

TEST(PolynomialFit, IsThatOfLeastSquares) {
    // Worked by hand: sums over x 0 1 2 4 of (x - 7/4)(y - 5/4) and (x - 7/4)^2 are 21/4 and 35/4.
    PolynomialFit fit;
    Values values;
    ASSERT_EQ(polycurvfit(Values{0, 1, 2, 4}, Values{0, 2, 0, 3}, Values{}, values, 1, &fit),
              success);
    EXPECT_NEAR(fit.coefficients[1], 0.6, 1e-15);
    EXPECT_NEAR(fit.coefficients[0], 0.2, 1e-15);
}

TEST(PolynomialFit, FewAbscissaeHoldTheDegreeDown) {
    PolynomialFit fit;
    Values value{0.0};
    ASSERT_EQ(polycurvfit(Values{0, 0, 2, 2}, Values{1, 3, 5, 7}, Values{1}, value, 5, &fit),
              success);
    EXPECT_NEAR(value[0], 4.0, 1e-14);
    EXPECT_EQ(fit.coefficients[2], 0.0);
}

TEST(PolynomialFit, ChoosesItsDegreeFromTheNumberOfPoints) {
    struct Case {
        std::size_t points, degree;
    };
    for (const auto& [points, degree] :
         {Case{2, 1}, Case{3, 1}, Case{4, 2}, Case{9, 7}, Case{10, 8}, Case{11, 8}, Case{40, 8}}) {
        const Values x = abscissae(points);
        Values y;
        for (const double point : x) {
            y.push_back(std::exp(point));
        }
        PolynomialFit fit;
        Values values;
        ASSERT_EQ(polycurvfit(x, y, Values{}, values, {}, &fit), success);
        EXPECT_NE(fit.coefficients[degree], 0.0) << points;
        EXPECT_EQ(fit.coefficients[degree + 1], 0.0) << points;
    }
}

TEST(PolynomialFit, RefusesWhatItCannotFit) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char* event;
        Values x, y;
        std::optional<std::int32_t> degree;
    };
    const Case cases[] = {
        {"101 2 polycurvfit: degrees of polynomial exceeds 9", {1, 2}, {1, nan}, 10},
        {"101 2 polycurvfit: x or y data contains NaN", {1, 2, 3}, {1, nan, 3}, 1},
        {"101 2 polycurvfit: x or y data contains NaN", {nan, 2, 3}, {1, 2, 3}, 1},
        {"101 2 polycurvfit: x or y data contains NaN", {2, 2}, {nan, 1}, 1}, // ahead of the rest
        {"101 2 polycurvfit: error calling imsl drcurv", {2, 2, 2}, {1, 2, 3}, 1},
        {"101 2 polycurvfit: error calling imsl drcurv", {2}, {1}, 1},
        {"101 2 polycurvfit: error calling imsl drcurv", {1, 2}, {1, 2}, -1},
        {"101 2 polycurvfit: error calling imsl drcurv", {}, {}, {}},
        {"101 2 polycurvfit: cannot do curve with one point", {2}, {1}, {}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(failure_of(c.x, c.y, c.degree), c.event);
    }
}

} // namespace vialto::test
