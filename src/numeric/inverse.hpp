// Inverse of a general square matrix in 32-bit floating point, by elimination with partial
// pivoting.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace vialto {

// Row by row: matrix[row][column].
template <std::size_t Order>
using SquareMatrix = std::array<std::array<float, Order>, Order>;

// Codes of the last inversion.
inline constexpr std::int32_t inverse_found = 0;
inline constexpr std::int32_t matrix_is_singular = 2;

// Given a matrix, returns a code and, with inverse_found, writes its inverse. A matrix is singular
// when no pivot other than zero is left in a column, or when the pivot is not a finite number;
// `inverse` is then untouched.
template <std::size_t Order>
[[nodiscard]] std::int32_t invert(SquareMatrix<Order> matrix, SquareMatrix<Order>& inverse) {
    SquareMatrix<Order> result{};
    for (std::size_t i = 0; i < Order; ++i) {
        result[i][i] = 1.0F;
    }
    for (std::size_t column = 0; column < Order; ++column) {
        std::size_t pivot_row = column;
        for (std::size_t row = column + 1; row < Order; ++row) {
            if (std::fabs(matrix[row][column]) > std::fabs(matrix[pivot_row][column])) {
                pivot_row = row;
            }
        }
        const float pivot = matrix[pivot_row][column];
        if (pivot == 0.0F || !std::isfinite(pivot)) {
            return matrix_is_singular;
        }
        std::swap(matrix[column], matrix[pivot_row]);
        std::swap(result[column], result[pivot_row]);
        for (std::size_t k = 0; k < Order; ++k) {
            matrix[column][k] = matrix[column][k] / pivot;
            result[column][k] = result[column][k] / pivot;
        }
        for (std::size_t row = 0; row < Order; ++row) {
            const float factor = matrix[row][column];
            if (row == column || factor == 0.0F) {
                continue;
            }
            for (std::size_t k = 0; k < Order; ++k) {
                matrix[row][k] = matrix[row][k] - factor * matrix[column][k];
                result[row][k] = result[row][k] - factor * result[column][k];
            }
        }
    }
    inverse = result;
    return inverse_found;
}

} // namespace vialto
