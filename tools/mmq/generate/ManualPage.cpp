// The manual page: what it says of commands and options comes from the command line, the rest is
// written here. Macros of man(7).
#include "Version.h"
#include "generate/ProgramDescription.h"

namespace mmq {

namespace {

constexpr const char* introduction = R"(.SH NAME
mmq \- ask models questions in a typed query language
.SH SYNOPSIS
.B mmq
.I COMMAND
.RI [ OPTION ...]
.RI [ EXPRESSION ]
.SH DESCRIPTION
.B mmq
compiles short expressions of a typed query language and evaluates them on models: XMI documents of
UML, Ecore and their like, and JSON documents.
Every expression has a type that is known before it runs; a wrong one is refused with a sentence and
a place.
.PP
An expression is an argument, a file named with
.BR \-f ,
or
.B \-
for the standard input.
Quote it with single quotes, so that the shell leaves $ and double quotes alone.
One that begins with
.B \-
may follow
.BR \-\- .
)";

constexpr const char* rest = R"(.SH EXIT STATUS
.TP
.B 0
All went well.
.TP
.B 1
With
.BR \-\-fail ,
the condition is false for some object; of
.B lint
and
.BR test ,
there are findings, or a case does not hold.
.TP
.B 2
The command line is wrong.
.TP
.B 3
The expression does not compile, or names what no object can have; of
.BR lint ,
a rule is wrong.
.TP
.B 4
The model cannot be read.
.TP
.B 5
An evaluation failed or reached a limit.
.SH ENVIRONMENT
.TP
.B NO_COLOR
Where it is set and not empty, messages have no colours unless
.B \-\-color
asks for them.
.TP
.BR MMQ_PAGER ", " PAGER
What shows answers and findings that are longer than the terminal; the first that is set counts.
.B less
where neither is, nothing where it is empty or
.BR cat .
Output that does not go to a terminal is never paged.
.TP
.B LESS
The options of
.BR less ;
.B FRX
where it is not set.
.SH FILES
.TP
.I $XDG_STATE_HOME/mmq/history
What was entered into
.BR "mmq repl" ;
below
.I ~/.local/state
where the variable is not set.
.SH EXAMPLES
.TP
The names of all classes:
.EX
mmq eval \-\-model shop.uml \-\-on Class \(aq$name\(aq
.EE
.TP
Stop a build where a class has no attribute:
.EX
mmq eval \-\-model shop.uml \-\-on Class \-\-fail \(aqsize [ownedAttribute] > 0\(aq
.EE
.TP
Completion in this shell:
.EX
eval \(dq$(mmq generate bash)\(dq
.EE
)";

// A text in which no character has a meaning to the formatter.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            default:
                result += character;
        }
    }
    return result;
}

std::string optionText(const OptionDescription& option) {
    std::string text = ".TP\n";
    if (option.isByPlace) {
        text += ".I " + escaped(option.names[0]);
    } else {
        text += "\\fB" + escaped(joined(option.names, ", ")) + "\\fR";
    }
    if (!option.choices.empty()) {
        text += " \\fB" + joined(option.choices, "\\fR|\\fB") + "\\fR";
    } else if (!option.value.empty() && !option.isByPlace) {
        text += " \\fI" + escaped(option.value) + "\\fR";
    }
    return text + "\n" + escaped(option.help) + ".\n";
}

std::string optionTexts(const CommandDescription& command) {
    std::string text;
    for (const OptionDescription& option : command.options) {
        if (command.name.empty() || option.names[0] != "-h") {
            text += optionText(option);
        }
    }
    return text;
}

}  // namespace

std::string manualPage(const ProgramDescription& description) {
    std::string text = std::string(".TH MMQ 1 \"\" \"mmq ") + version + "\" \"User Commands\"\n";
    text += introduction;
    text += ".SH OPTIONS\n" + optionTexts(description.program) + ".SH COMMANDS\n";
    for (const CommandDescription& command : description.commands) {
        text += ".SS mmq " + command.name + "\n" + escaped(command.help) + ".\n";
        text += optionTexts(command);
    }
    return text + rest;
}

}  // namespace mmq
