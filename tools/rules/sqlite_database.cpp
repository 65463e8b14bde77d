#include "rules/sqlite_database.h"

#include <sqlite3.h>

#include <new>
#include <utility>

#include "common/error.h"

namespace korv::tools {

namespace {

constexpr std::size_t rows_at_once = 64;

}  // namespace

SqliteDatabase::SqliteDatabase(const std::string& path, std::string name) : name_(std::move(name)) {
    constexpr const char* without_locks = "unix-none";
    sqlite3* connection = nullptr;
    const int status = sqlite3_open_v2(path.c_str(), &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                       without_locks);
    connection_.reset(connection);
    require(status);
    // What a library can be built to do otherwise is said, so that the bytes are the same everywhere. The
    // cache (KiB) also bounds what is sorted at once for an index: what the caches of a processor hold is
    // sorted twice as fast.
    run("PRAGMA page_size = 4096; PRAGMA encoding = 'UTF-8'; PRAGMA auto_vacuum = NONE;"
        "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -4096;");
}

void SqliteDatabase::run(const std::string& sql) const {
    require(sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, nullptr));
}

void SqliteDatabase::require(int status) const {
    if (status == SQLITE_OK || status == SQLITE_DONE) {
        return;
    }
    if (status == SQLITE_NOMEM || connection_ == nullptr) {
        throw std::bad_alloc();
    }
    throw Error(name_ + ": cannot be written: " + sqlite3_errmsg(connection_.get()));
}

void SqliteDatabase::Close::operator()(sqlite3* connection) const {
    sqlite3_close(connection);
}

SqliteStatement::SqliteStatement(const SqliteDatabase& database, const std::string& sql)
    : database_(database) {
    sqlite3_stmt* statement = nullptr;
    const int status = sqlite3_prepare_v2(database_.connection_.get(), sql.c_str(),
                                          static_cast<int>(sql.size()), &statement, nullptr);
    statement_.reset(statement);
    database_.require(status);
}

void SqliteStatement::add(double number) {
    database_.require(sqlite3_bind_double(statement_.get(), ++values_, number));
}

void SqliteStatement::add(std::string_view text) {
    constexpr sqlite3_destructor_type is_not_copied = nullptr;
    database_.require(sqlite3_bind_text64(statement_.get(), ++values_, text.data(), text.size(),
                                          is_not_copied, SQLITE_UTF8));
}

void SqliteStatement::add_integer(std::int64_t number) {
    database_.require(sqlite3_bind_int64(statement_.get(), ++values_, number));
}

void SqliteStatement::add_null() {
    database_.require(sqlite3_bind_null(statement_.get(), ++values_));
}

void SqliteStatement::insert() {
    const int status = sqlite3_step(statement_.get());
    database_.require(status);
    sqlite3_reset(statement_.get());
    values_ = 0;
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SqliteLinks::SqliteLinks(const SqliteDatabase& database, const std::string& table)
    : many_(database, insertion(table, 2, rows_at_once)), one_(database, insertion(table, 2)) {}

void SqliteLinks::add(std::int64_t from, std::int64_t to) {
    waiting_.emplace_back(from, to);
    if (waiting_.size() < rows_at_once) {
        return;
    }
    for (const auto& [first, second] : waiting_) {
        many_.add(first);
        many_.add(second);
    }
    many_.insert();
    waiting_.clear();
}

void SqliteLinks::finish() {
    for (const auto& [first, second] : waiting_) {
        one_.insert_row(first, second);
    }
    waiting_.clear();
}

std::string insertion(std::string_view table, std::size_t columns, std::size_t rows) {
    std::string row = ",(?";
    for (std::size_t i = 1; i < columns; ++i) {
        row += ",?";
    }
    row += ')';
    std::string sql = "INSERT INTO " + std::string(table) + " VALUES" + row.substr(1);
    for (std::size_t i = 1; i < rows; ++i) {
        sql += row;
    }
    return sql;
}

}  // namespace korv::tools
