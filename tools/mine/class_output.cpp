#include "mine/class_output.h"

#include <string>
#include <vector>

#include "common/distinct_files.h"
#include "io/class_record.h"

namespace korv::tools {

void require_distinct_files(const Arguments& arguments) {
    std::vector<NamedFile> inputs;
    for (const std::string& path : arguments.transactions) {
        inputs.push_back({path, "the input"});
    }
    std::vector<NamedFile> outputs = {{arguments.output, "the class file (-o)"}};
    if (!arguments.names.empty()) {
        outputs.push_back({arguments.names, "the names file (--names)"});
    }
    require_distinct(inputs, outputs);
}

void write_classes(const MinedClasses& classes, AtomicOutput& output) {
    std::string record;
    classes.for_each([&](const MinedClass& each) {
        record.clear();
        append_class_record(each.closure, each.support, each.essentials, record);
        output.write(record);
    });
}

}  // namespace korv::tools
