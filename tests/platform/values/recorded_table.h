// Tables of facts recorded from a COM runtime, and the list of rows from which we differ on
// purpose.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace values_test {

using Row = std::vector<std::string>;

// Rows of data/NAME.tsv without the header line; raises when the file can't be read.
std::vector<Row> readTable(const std::string& name);

// Checks what we give against what was recorded. data/NAME_exceptions.tsv lists, by key, the rows
// where ours is another and why; such a row has to differ still, and exactly as listed.
class RecordedTable {
  public:
    explicit RecordedTable(const std::string& name);
    ~RecordedTable(); // fails for exceptions that no row used

    const std::vector<Row>& rows() const { return rows_; }
    void check(const std::string& key, const std::string& recorded, const std::string& ours);

  private:
    std::string name_;
    std::vector<Row> rows_;
    std::map<std::string, std::string> exceptions_; // key to our result
};

} // namespace values_test
