#include "rules/rule_writer.h"

#include <stdexcept>
#include <utility>

#include "rules/delimited_writer.h"
#include "rules/json_writer.h"
#include "rules/table_writer.h"
#include "rules/words_writer.h"

namespace korv::tools {

std::unique_ptr<RuleWriter> rule_writer(RuleFormat format, const RuleBook& book, const TerminalStyle& style,
                                        TextSink sink) {
    switch (format) {
        case RuleFormat::words:
            return words_writer(book, style.width, std::move(sink));
        case RuleFormat::table:
            return table_writer(book, style, std::move(sink));
        case RuleFormat::csv:
            return csv_writer(book, std::move(sink));
        case RuleFormat::tsv:
            return tsv_writer(book, std::move(sink));
        case RuleFormat::jsonl:
            return json_writer(book, std::move(sink));
        case RuleFormat::sqlite:
        case RuleFormat::dot:
        case RuleFormat::html:
            break;
    }
    throw std::invalid_argument("not written rule by rule");
}

}  // namespace korv::tools
