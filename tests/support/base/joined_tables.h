// Tables of tests that are written in several parts.
#pragma once

#include <initializer_list>
#include <vector>

template <typename Row>
std::vector<Row> joined(std::initializer_list<std::vector<Row>> parts) {
    std::vector<Row> rows;
    for (const std::vector<Row>& part : parts) {
        rows.insert(rows.end(), part.begin(), part.end());
    }
    return rows;
}
