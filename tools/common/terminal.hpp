// What is shown on terminals alone: how far a long job is, and colours.

#ifndef ZEMTIME_TOOLS_TERMINAL_HPP
#define ZEMTIME_TOOLS_TERMINAL_HPP

#include <string>

#include "Zem/Os/ZemTimeInline.h"

// One line on standard error that says how far the reading of a file is, when that is a terminal
// and the work takes longer than a second. Other output is to be written behind Clear.
class Progress {
  public:
    // `descriptor`: of the file, not yet read from.
    Progress(const std::string& file, int descriptor);

    ~Progress()
    {
        Clear();
    }

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // To be called now and then, with the bytes that have been read.
    void Update(ZemUint64 bytes);

    void Clear();

  private:
    std::string name_;
    ZemUint64 total_ = 0;  // bytes; 0: not known
    bool onTerminal_;
    bool shown_ = false;
    ZemTime due_ = 0;
};

// `text` as a heading, where standard output is a terminal that knows colours and NO_COLOR is not
// set; as it is everywhere else.
std::string Heading(const std::string& text);

// The same for what is drawn.
std::string Coloured(const std::string& text);

#endif
