#include "rules/output_origin.h"

#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "common/quantity.h"
#include "rules/column_facts.h"
#include "rules/item_choice.h"

namespace korv::tools {

namespace {

std::string name_of_file(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

std::string names_of_files(const std::vector<std::string>& paths) {
    std::string names;
    for (const std::string& path : paths) {
        names += (names.empty() ? "" : ", ") + name_of_file(path);
    }
    return names;
}

/// A text with another one in each place of a part of it.
std::string replaced(std::string text, const std::string& part, const std::string& by) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size())) {
        text.replace(at, part.size(), by);
    }
    return text;
}

/// The notes on the input, which name the files of a run, without their directories.
std::vector<std::string> notes_without_directories(const RuleInput& input, const InputRequest& request) {
    std::vector<std::string> paths = request.paths;
    paths.insert(paths.end(), {request.database, request.holdout, input.names_path});
    std::vector<std::string> notes = input.notes;
    for (const std::string& path : paths) {
        const std::string name = name_of_file(path);
        if (name.empty() || name == path) {
            continue;
        }
        for (std::string& note : notes) {
            note = replaced(std::move(note), path, name);
        }
    }
    return notes;
}

std::optional<ExclusionResult> exclusions_of_page(const RuleInput& input, RuleRequest request,
                                                  const ExclusionProgress& progress) {
    if (!input.database) {
        return std::nullopt;
    }
    request.top = most_exclusions_of_page;
    if (request.min_support.value == 0) {  // as goes without saying of rule files
        request.min_support = RuleRequest().min_support;
    }
    const ColumnFacts columns(input.names, *input.database);
    const ExclusionRequest pairs = {.max_items = 2};
    return find_exclusions(*input.database, input.names, columns, ItemChoice(), request, pairs, progress);
}

}  // namespace

RulesOrigin database_origin(const RuleInput& input, const RuleArguments& arguments) {
    return {input, names_of_files(arguments.input.paths), arguments.decisive_options};
}

PageOrigin page_origin(const RuleInput& input, const RuleArguments& arguments, const RuleRequest& request,
                       const ExclusionProgress& progress) {
    return {input,
            names_of_files(arguments.input.paths),
            arguments.decisive_options,
            notes_without_directories(input, arguments.input),
            request,
            exclusions_of_page(input, request, progress)};
}

std::string note_on_classes(std::size_t on_page, std::size_t all) {
    return on_page == all
               ? ""
               : "The page has room for " + with_commas(on_page) + " of " + counted(all, "class", "es") +
                     ", those of the first rules with their neighbours; -o rules.db has all.\n";
}

}  // namespace korv::tools
