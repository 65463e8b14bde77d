#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace korv::tools {

/// A database of SQLite that is written once, into a file that nobody else knows. So it has no journal, takes
/// no locks and does not wait for the disk: when the program ends early, the file is to be thrown away.
class SqliteDatabase {
public:
    /// Opens the file at `path`, which is there and empty. `name` is what messages call it. Throws Error.
    SqliteDatabase(const std::string& path, std::string name);

    /// Runs one statement, or several with semicolons between them. Throws Error, as when the disk is full.
    void run(const std::string& sql) const;

private:
    friend class SqliteStatement;
    struct Close {
        void operator()(sqlite3* connection) const;
    };

    /// Throws Error, or std::bad_alloc, unless `status` is a good one.
    void require(int status) const;

    std::string name_;
    std::unique_ptr<sqlite3, Close> connection_;
};

/// A statement that inserts rows.
class SqliteStatement {
public:
    /// Prepares a statement with a parameter for each value of a row. `database` must outlive it. Throws
    /// Error.
    SqliteStatement(const SqliteDatabase& database, const std::string& sql);

    /// Gives the next value of the row, a whole number.
    template <std::integral Number>
    void add(Number number) {
        add_integer(static_cast<std::int64_t>(number));
    }

    /// Gives the next value of the row; NULL for NaN.
    void add(double number);

    /// Gives the next value of the row, in UTF-8. The text must stay as it is until the row is inserted.
    void add(std::string_view text);

    /// Gives the next value of the row; NULL for nothing.
    template <typename Value>
    void add(const std::optional<Value>& value) {
        if (value) {
            add(*value);
        } else {
            add_null();
        }
    }

    /// Inserts the row and begins the next one. Throws Error.
    void insert();

    /// Inserts a row of these values. Throws Error.
    template <typename... Values>
    void insert_row(const Values&... values) {
        (add(values), ...);
        insert();
    }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    void add_integer(std::int64_t number);
    void add_null();

    const SqliteDatabase& database_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    int values_ = 0;  ///< of the row, until now
};

/// Inserts rows of two whole numbers into a table, many at once, which takes a third of the time.
class SqliteLinks {
public:
    /// `table` has two columns. `database` must outlive it. Throws Error.
    SqliteLinks(const SqliteDatabase& database, const std::string& table);

    /// Inserts a row, now or later. Throws Error.
    void add(std::int64_t from, std::int64_t to);

    /// Inserts what is left. Call this once, last. Throws Error.
    void finish();

private:
    SqliteStatement many_;
    SqliteStatement one_;
    std::vector<std::pair<std::int64_t, std::int64_t>> waiting_;
};

/// The statement that inserts rows into a table with so many columns: "INSERT INTO edge VALUES(?,?),(?,?)".
std::string insertion(std::string_view table, std::size_t columns, std::size_t rows = 1);

}  // namespace korv::tools
