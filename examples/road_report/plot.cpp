#include "plot.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <limits>
#include <stdexcept>

namespace {

// The page and the frame of the plot in it, in pixels.
constexpr double width = 900.0;
constexpr double height = 540.0;
constexpr double left = 90.0;
constexpr double right = 880.0;
constexpr double top = 50.0;
constexpr double bottom = 480.0;

constexpr std::array<const char*, 5> colours{"#1f5fa8", "#c8501e", "#3a8a3a", "#7a4a9a", "#555"};

std::string text(double number) {
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.6g", number);
    return buffer.data();
}

// An axis with its range, laid over the pixels `from` to `to`.
class Scale {
public:
    Scale(const Axis& axis, double from, double to, const std::vector<Curve>& curves,
          std::vector<float> Curve::*values)
        : logarithmic_(axis.logarithmic), from_(from), to_(to) {
        for (const Curve& curve : curves) {
            for (const float value : curve.*values) {
                if (shows(value)) {
                    low_ = std::min(low_, measure(static_cast<double>(value)));
                    high_ = std::max(high_, measure(static_cast<double>(value)));
                }
            }
        }
        if (!(low_ < high_)) {
            low_ = std::isfinite(low_) ? low_ - 0.5 : 0.0;
            high_ = low_ + 1.0;
        }
    }

    [[nodiscard]] bool shows(float value) const {
        return std::isfinite(value) && (!logarithmic_ || value > 0.0F);
    }

    [[nodiscard]] double pixel(double value) const {
        return from_ + (measure(value) - low_) / (high_ - low_) * (to_ - from_);
    }

    // Values to mark: 1, 2 and 5 of every power of 10, or about six round numbers.
    [[nodiscard]] std::vector<double> ticks() const {
        return logarithmic_ ? logarithmic_ticks() : linear_ticks();
    }

private:
    [[nodiscard]] std::vector<double> logarithmic_ticks() const {
        std::vector<double> marks;
        for (double decade = std::floor(low_); decade <= high_; ++decade) {
            for (const double digit : {1.0, 2.0, 5.0}) {
                const double mark = digit * std::pow(10.0, decade);
                if (low_ <= measure(mark) && measure(mark) <= high_) {
                    marks.push_back(mark);
                }
            }
        }
        return marks;
    }

    [[nodiscard]] std::vector<double> linear_ticks() const {
        const double rough = (high_ - low_) / 6.0;
        const double decade = std::pow(10.0, std::floor(std::log10(rough)));
        const double step = decade * (rough < 2.0 * decade   ? 2.0
                                      : rough < 5.0 * decade ? 5.0
                                                             : 10.0);
        std::vector<double> marks;
        for (double at = std::ceil(low_ / step); at * step <= high_; ++at) {
            marks.push_back(at * step + 0.0); // no minus before a zero
        }
        return marks;
    }

    [[nodiscard]] double measure(double value) const {
        return logarithmic_ ? std::log10(value) : value;
    }

    bool logarithmic_;
    double from_;
    double to_;
    double low_ = std::numeric_limits<double>::infinity();
    double high_ = -std::numeric_limits<double>::infinity();
};

std::string svg_text(double x, double y, const std::string& more, const std::string& words) {
    return "<text x='" + text(x) + "' y='" + text(y) + "' " + more + ">" + words + "</text>\n";
}

std::string svg_line(double x1, double y1, double x2, double y2) {
    return "<line x1='" + text(x1) + "' y1='" + text(y1) + "' x2='" + text(x2) + "' y2='" +
           text(y2) + "' stroke='#ddd'/>\n";
}

std::string svg_grid(const Scale& across, const Scale& up) {
    std::string svg;
    for (const double mark : across.ticks()) {
        const double x = across.pixel(mark);
        svg += svg_line(x, top, x, bottom);
        svg += svg_text(x, bottom + 18.0, "text-anchor='middle'", text(mark));
    }
    for (const double mark : up.ticks()) {
        const double y = up.pixel(mark);
        svg += svg_line(left, y, right, y);
        svg += svg_text(left - 8.0, y + 4.0, "text-anchor='end'", text(mark));
    }
    return svg;
}

std::string svg_curve(const Curve& curve, const Scale& across, const Scale& up,
                      const std::string& colour) {
    std::string points;
    for (std::size_t i = 0; i < curve.x.size(); ++i) {
        if (across.shows(curve.x[i]) && up.shows(curve.y[i])) {
            points += text(across.pixel(static_cast<double>(curve.x[i]))) + "," +
                      text(up.pixel(static_cast<double>(curve.y[i]))) + " ";
        }
    }
    return "<polyline fill='none' stroke='" + colour + "' stroke-width='1.2' points='" + points +
           "'/>\n";
}

void finish(std::ofstream& file, const std::string& path) {
    file.close();
    if (!file) {
        throw std::runtime_error(path + ": cannot be written");
    }
}

} // namespace

void write_table(const std::string& path, const std::string& x_name, const std::string& y_ending,
                 const std::vector<Curve>& curves) {
    std::ofstream file(path);
    file.precision(8); // a millimetre in 10 km
    file << x_name;
    for (const Curve& curve : curves) {
        file << ',' << curve.name << y_ending;
    }
    for (std::size_t i = 0; i < curves.front().x.size(); ++i) {
        file << '\n' << curves.front().x[i];
        for (const Curve& curve : curves) {
            file << ',' << curve.y[i];
        }
    }
    file << '\n';
    finish(file, path);
}

void write_plot(const std::string& path, const std::string& title, const Axis& x, const Axis& y,
                const std::vector<Curve>& curves) {
    const Scale across(x, left, right, curves, &Curve::x);
    const Scale up(y, bottom, top, curves, &Curve::y);
    std::ofstream file(path);
    file << "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " << width << ' ' << height
         << "' font-family='sans-serif' font-size='13'>\n"
         << "<rect width='100%' height='100%' fill='white'/>\n"
         << svg_text(left, 30.0, "font-size='17'", title) << svg_grid(across, up) << "<rect x='"
         << left << "' y='" << top << "' width='" << right - left << "' height='" << bottom - top
         << "' fill='none' stroke='black'/>\n"
         << svg_text((left + right) / 2.0, height - 18.0, "text-anchor='middle'", x.label)
         << svg_text(0.0, 0.0,
                     "text-anchor='middle' transform='translate(20," + text((top + bottom) / 2.0) +
                         ") rotate(-90)'",
                     y.label);
    for (std::size_t k = 0; k < curves.size(); ++k) {
        const std::string colour = colours[k % colours.size()];
        file << svg_curve(curves[k], across, up, colour)
             << svg_text(right - 10.0, top + 20.0 + 18.0 * static_cast<double>(k),
                         "text-anchor='end' fill='" + colour + "'", curves[k].name);
    }
    file << "</svg>\n";
    finish(file, path);
}
