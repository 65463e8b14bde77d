#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <string>

#include "check/check_arguments.h"
#include "check/check_status.h"
#include "check/checked_classes.h"
#include "check/class_order_check.h"
#include "check/finding_report.h"
#include "check/support_bounds_check.h"
#include "common/atomic_output.h"
#include "common/error.h"
#include "common/standard_streams.h"
#include "common/text_input.h"

namespace {

using namespace korv;
using namespace korv::tools;

void say(const std::string& message) {
    std::cerr << "korv-check: " << message << '\n';
}

void write(const std::string& text) {
    AtomicOutput output("-");
    output.write(text);
    output.commit();
}

CheckStatus run(const CheckArguments& arguments) {
    TextInput input = read_text(arguments.path);
    Findings findings({input.name}, arguments.most, false);
    const CheckedClasses checked = check_class_file(std::move(input), findings);
    check_order_of_classes(checked, arguments.transactions, findings);
    check_support_bounds(KnownSupports(checked), findings);
    if (!arguments.quiet) {
        write(finding_report(findings, checked.stored, arguments.format));
    }
    return status_of(findings);
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
    } catch (const BrokenPipe&) {
        // The reader has had enough; nobody knows what the rest would have been.
    } catch (const std::exception& error) {
        say(error.what());
    }
    return static_cast<int>(status);
}
