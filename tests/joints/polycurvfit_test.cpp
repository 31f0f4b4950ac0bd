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

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Abscissae 1.0 to 4.0 in a number of points.
Values abscissae(std::size_t count) {
    Values x(count);
    for (std::size_t i = 0; i < count; ++i) {
        x[i] = 1.0 + 3.0 * static_cast<double>(i) / static_cast<double>(count - 1);
    }
    return x;
}

} // namespace

TEST(PolynomialFit, GivesBackAPolynomialOfEveryDegree) {
    const Values x = abscissae(30);
    Values y(x.size());
    for (std::int32_t degree = 0; degree <= max_polynomial_degree; ++degree) {
        for (std::size_t i = 0; i < x.size(); ++i) {
            y[i] = y[i] * (x[i] - 2.0) + 1.0; // 1 + (x - 2) + (x - 2)^2 + ...
        }
        Values values{10.0, 20.0};
        ASSERT_EQ(polycurvfit(x, y, Values{2.0, 3.0}, values, degree), success);
        EXPECT_NEAR(values[0], 10.0 + 1.0, 1e-8) << degree;
        EXPECT_NEAR(values[1], 20.0 + degree + 1, 1e-8) << degree;
    }
}

TEST(PolynomialFit, IsThatOfLeastSquares) {
    // Worked by hand: sums over x 0 1 2 4 of (x - 7/4)(y - 5/4) and (x - 7/4)^2 are 21/4 and 35/4.
    Values line{0.0, 0.0};
    ASSERT_EQ(polycurvfit(Values{0, 1, 2, 4}, Values{0, 2, 0, 3}, Values{0, 1}, line, 1), success);
    EXPECT_NEAR(line[0], 0.2, 1e-15);
    EXPECT_NEAR(line[1], 0.8, 1e-15);
    // Two abscissae determine no more than a line.
    Values held{0.0, 0.0};
    ASSERT_EQ(polycurvfit(Values{0, 0, 2, 2}, Values{1, 3, 5, 7}, Values{1, 3}, held, 5), success);
    EXPECT_NEAR(held[0], 4.0, 1e-14);
    EXPECT_NEAR(held[1], 8.0, 1e-14);
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
    struct Case {
        const char* text;
        Values x, y;
        std::optional<std::int32_t> degree;
    };
    for (const auto& [text, x, y, degree] :
         {Case{"degrees of polynomial exceeds 9", {1, 2}, {1, nan}, 10},
          Case{"x or y data contains NaN", {1, 2, 3}, {1, nan, 3}, 1},
          Case{"x or y data contains NaN", {nan, 2, 3}, {1, 2, 3}, 1},
          Case{"x or y data contains NaN", {2, 2}, {nan, 1}, 1}, // ahead of the rest
          Case{"error calling imsl drcurv", {2, 2, 2}, {1, 2, 3}, 1},
          Case{"error calling imsl drcurv", {2}, {1}, 1},
          Case{"error calling imsl drcurv", {1, 2}, {1, 2}, -1},
          Case{"error calling imsl drcurv", {}, {}, {}},
          Case{"cannot do curve with one point", {2}, {1}, {}}}) {
        reset_event();
        Values values{7.0};
        EXPECT_EQ(polycurvfit(x, y, Values{1.0}, values, degree), failure);
        EXPECT_EQ(values[0], 7.0);
        EXPECT_EQ(summary_of_current_event(), std::string("101 2 polycurvfit: ") + text);
    }
}

} // namespace vialto::test
