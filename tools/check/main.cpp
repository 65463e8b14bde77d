#include <algorithm>
#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "check/check_arguments.h"
#include "check/check_status.h"
#include "check/checked_classes.h"
#include "check/class_mending.h"
#include "check/class_notes.h"
#include "check/class_order_check.h"
#include "check/database_check.h"
#include "check/file_kind.h"
#include "check/finding_report.h"
#include "check/rule_check.h"
#include "check/support_bounds_check.h"
#include "common/atomic_output.h"
#include "common/distinct_files.h"
#include "common/error.h"
#include "common/printable.h"
#include "common/standard_streams.h"
#include "common/temporary_file.h"
#include "common/text_input.h"
#include "rules/rule_input.h"
#include "rules/summary_lines.h"

namespace {

using namespace korv;
using namespace korv::tools;

void say(const std::string& message) {
    std::cerr << "korv-check: " << printable(message) << '\n';
}

/// Writes the report, to standard error where the mended file goes to standard output. A reader who has had
/// enough has read the first findings; the status tells of all.
void write(const std::string& text, const CheckArguments& arguments) {
    if (arguments.mended == "-") {
        std::cerr << text;
        return;
    }
    try {
        AtomicOutput output("-");
        output.write(text);
        output.commit();
    } catch (const BrokenPipe&) {
        // Nothing is left to be told.
    }
}

std::vector<std::string> names_of(const std::string& class_file, const std::vector<std::string>& rules) {
    std::vector<std::string> names = {class_file};
    for (const std::string& path : rules) {
        names.push_back(path == "-" ? "standard input" : path);
    }
    return names;
}

/// Throws Error when the mended file would replace an input, the class file above all.
void require_distinct_files(const CheckArguments& arguments) {
    std::vector<NamedFile> inputs = {{arguments.path, "the class file"}};
    if (!arguments.database.empty()) {
        inputs.push_back({arguments.database, "the database (--database)"});
    }
    if (!arguments.names.empty()) {
        inputs.push_back({arguments.names, "the names file (--names)"});
    }
    if (const std::string names = names_beside(arguments.path); !names.empty()) {
        inputs.push_back({names, "the names file beside the class file"});
    }
    for (const std::string& path : arguments.rules) {
        inputs.push_back({path, "a rule file (--rules)"});
    }
    std::vector<NamedFile> outputs;
    if (!arguments.mended.empty()) {
        outputs.push_back({arguments.mended, "the mended file (--fix)"});
    }
    require_distinct(inputs, outputs);
}

/// The transactions with the items numbered as in the class file.
Database read_transactions(const CheckArguments& arguments) {
    InputRequest request;
    request.paths = {arguments.path};
    request.database = arguments.database;
    request.names = arguments.names;
    request.reading = arguments.reading;
    return std::move(*context_of_class_file(request).database);
}

/// Returns how many classes were counted again, where these are not all.
std::optional<std::size_t> check_against(const Database& database, const CheckedClasses& checked,
                                         const CheckArguments& arguments, Findings& findings) {
    const std::size_t counted =
        check_against_database(checked, database, arguments.database, arguments.sample, findings);
    std::size_t file = 1;
    for (const std::string& path : arguments.rules) {
        check_rules(path, database, file++, findings);
    }
    return counted < checked.classes.size() ? std::optional(counted) : std::nullopt;
}

/// Looks for contradictions, and for what is missing.
void check_classes(const CheckedClasses& checked, std::optional<Count> transactions,
                   const CheckArguments& arguments, Findings& findings) {
    const KnownSupports known(checked);
    check_order_of_classes(checked, known, transactions, findings);
    check_support_bounds(known, findings);
    if (arguments.notes != NoteChoice::none) {
        note_what_is_missing(checked, known, arguments.most_items, findings);
    }
}

struct CheckedFile {
    CheckedClasses checked;
    std::optional<std::size_t> sample;  ///< how many classes were counted again, where these are not all
};

/// Looks at the class file; of a file of another kind, only says that it is.
CheckedFile check_file(TextInput input, const std::optional<Database>& database,
                       const CheckArguments& arguments, Findings& findings) {
    if (const auto other = other_file(input.text)) {
        findings.add({.kind = FindingKind::other_file,
                      .severity = Severity::error,
                      .place = {1, 1},
                      .found = std::string(other->found),
                      .expected = std::string(other->expected)});
        Findings of_lines({input.name}, 1, false);
        return {check_class_file(std::move(input), of_lines), {}};
    }
    CheckedFile file = {check_class_file(std::move(input), findings), {}};
    check_classes(file.checked, database ? database->transactions : arguments.transactions, arguments,
                  findings);
    if (database) {
        file.sample = check_against(*database, file.checked, arguments, findings);
    }
    return file;
}

/// Writes the mended file, where that needs no guess, and says so.
CheckStatus mend(const CheckedClasses& checked, const Findings& findings, bool is_quiet,
                 AtomicOutput& output) {
    const std::string left = what_is_not_mended(findings);
    if (!left.empty()) {
        say(output.name() + ": not written, since to mend " + left + " would be a guess");
        return status_of(findings);
    }
    if (checked.unclear_lines > 0) {
        say(output.name() + ": not written, since what " + counted(checked.unclear_lines, "line") +
            " should be would be a guess");
        return status_of(findings);
    }
    output.write(mended_text(checked));
    output.commit();
    if (!is_quiet) {
        std::cerr << mending_report(findings, checked, printable(output.name()));
    }
    return status_of_mended(findings);
}

/// Standard input has an end only once.
void require_standard_input_once(const CheckArguments& arguments) {
    std::vector<std::string> paths = arguments.rules;
    paths.insert(paths.end(), {arguments.path, arguments.database, arguments.names});
    if (std::ranges::count(paths, "-") > 1) {
        throw Error("-: found twice among the inputs; expected standard input at most once");
    }
}

CheckStatus run(const CheckArguments& arguments) {
    remove_temporary_files_on_signals();
    require_standard_input_once(arguments);
    require_distinct_files(arguments);
    // The output is opened before the work begins, so that a wrong path is found early.
    std::optional<AtomicOutput> mended;
    if (!arguments.mended.empty()) {
        mended.emplace(arguments.mended);
    }
    std::optional<Database> database;
    if (!arguments.database.empty()) {
        database = read_transactions(arguments);
    }
    TextInput input = read_text(arguments.path);
    Findings findings(names_of(input.name, arguments.rules), arguments.most,
                      arguments.notes == NoteChoice::shown);
    if (arguments.notes == NoteChoice::none) {
        findings.ignore_notes();
    }
    const auto [checked, sample] = check_file(std::move(input), database, arguments, findings);
    if (!arguments.quiet) {
        const std::size_t to_mend = mended ? 0 : mendable(checked, findings);
        write(finding_report(findings, {checked.stored, sample, to_mend}, arguments.format), arguments);
    }
    return mended ? mend(checked, findings, arguments.quiet, *mended) : status_of(findings);
}

}  // namespace

int main(int argc, char** argv) {
    open_standard_streams();
    // A reader who has had enough, as head, is told apart from other faults by the error of writing.
    std::signal(SIGPIPE, SIG_IGN);
    CheckStatus status = CheckStatus::not_checked;
    try {
        const CheckArguments arguments = parse_check_arguments(argc, argv);
        status =
            within_memory([&] { return run(arguments); }, [&] { return "while checking " + arguments.path; });
    } catch (const std::exception& error) {
        say(error.what());
    }
    return static_cast<int>(status);
}
