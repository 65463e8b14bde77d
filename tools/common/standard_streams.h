#pragma once

namespace korv::tools {

/// Opens standard input, output and error on /dev/null where they are closed, so that no file that is opened
/// later takes the number of one of them, and with it what is printed there. Reading such an input and
/// writing such an output still fail; messages on such a standard error are lost. To be called first in
/// `main`.
void open_standard_streams();

}  // namespace korv::tools
