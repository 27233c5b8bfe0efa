// Reading of recorded tables.
#include "recorded_table.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace values_test {

namespace {

std::string pathOf(const std::string& name) {
    return std::string(VALUES_DATA_FOLDER "/") + name + ".tsv";
}

} // namespace

std::vector<Row> readTable(const std::string& name) {
    std::ifstream file(pathOf(name));
    std::string line;
    if (!std::getline(file, line)) throw std::runtime_error("can't read " + pathOf(name));
    std::vector<Row> rows;
    while (std::getline(file, line)) {
        Row row;
        std::size_t from = 0;
        for (std::size_t tab; (tab = line.find('\t', from)) != line.npos; from = tab + 1)
            row.push_back(line.substr(from, tab - from));
        row.push_back(line.substr(from));
        rows.push_back(std::move(row));
    }
    return rows;
}

RecordedTable::RecordedTable(const std::string& name) : name_(name), rows_(readTable(name)) {
    if (!VALUES_HAVE_EXCEPTIONS || !std::filesystem::exists(pathOf(name + "_exceptions"))) return;
    for (const Row& row : readTable(name + "_exceptions")) {
        EXPECT_EQ(row.size(), 3u) << "key, our result and reason, at " << row[0];
        exceptions_[row[0]] = row[1];
    }
}

RecordedTable::~RecordedTable() {
    EXPECT_FALSE(rows_.empty());
    for (const auto& [key, ours] : exceptions_)
        ADD_FAILURE() << name_ << ": exception for an unknown row: " << key << " (" << ours << ")";
}

void RecordedTable::check(const std::string& key, const std::string& recorded,
                          const std::string& ours) {
    const auto exception = exceptions_.find(key);
    if (exception == exceptions_.end()) {
        EXPECT_EQ(ours, recorded) << name_ << ": " << key;
        return;
    }
    EXPECT_EQ(ours, exception->second) << name_ << ": " << key;
    EXPECT_NE(ours, recorded) << name_ << ": needs no exception any more: " << key;
    exceptions_.erase(exception);
}

} // namespace values_test
