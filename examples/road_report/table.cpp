#include "table.hpp"

#include <cstddef>
#include <fstream>
#include <stdexcept>

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
    file.close();
    if (!file) {
        throw std::runtime_error(path + ": cannot be written");
    }
}
