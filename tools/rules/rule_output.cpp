#include "rules/rule_output.h"

#include <memory>

#include "rules/exclusion_writer.h"
#include "rules/itemset_pool.h"

namespace korv::tools {

void RuleOutput::write_rules(const std::vector<FoundRule>& rules, const RuleBook& book) {
    const std::unique_ptr<RuleWriter> writer =
        rule_writer(format_, book, style_, [this](std::string_view text) { output_.write(text); });
    for (const FoundRule& rule : rules) {
        writer->write(rule);
    }
    writer->finish();
    output_.commit();
}

void RuleOutput::write_database(const SearchResult& found, const RuleBook& book, const RulesOrigin& origin) {
    write_rules_database(found, book, origin, output_);
    output_.commit();
}

std::size_t RuleOutput::write_page(const SearchResult& found, const RuleBook& book,
                                   const PageOrigin& origin) {
    const std::size_t classes =
        write_rules_page(found, book, origin, [this](std::string_view text) { output_.write(text); });
    output_.commit();
    return classes;
}

std::size_t RuleOutput::write_graph(const SearchResult& found, const RuleBook& book, GraphKind graph) {
    const TextSink sink = [this](std::string_view text) { output_.write(text); };
    const std::size_t nodes = graph == GraphKind::rules ? write_rules_graph(found.rules, book, sink)
                                                        : write_lattice_graph(found.lattice, book, sink);
    output_.commit();
    return nodes;
}

void RuleOutput::write_exclusions(const std::vector<Exclusion>& exclusions, const RuleInput& input,
                                  const ColumnFacts& columns, double min_confidence) {
    ItemsetPool sides;
    for (const Exclusion& exclusion : exclusions) {
        for (const Item item : exclusion.items()) {
            sides.intern(ItemSpan(&item, 1));
        }
    }
    const RuleBook book = {sides, input.names, input.transactions, {}, &columns};
    const auto writer = exclusion_writer(format_, book, min_confidence, style_,
                                         [this](std::string_view text) { output_.write(text); });
    for (const Exclusion& exclusion : exclusions) {
        writer->write(exclusion);
    }
    writer->finish();
    output_.commit();
}

void RuleOutput::write_report(std::string_view report) {
    output_.write(report);
    output_.commit();
}

}  // namespace korv::tools
