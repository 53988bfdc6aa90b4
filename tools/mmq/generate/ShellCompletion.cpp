// The three shells complete alike: commands, then the options of the command, then the values of an
// option. Classes of the model that the line names are asked of mmq itself; where nothing is known
// about a value, the shell completes names of files.
#include "generate/ProgramDescription.h"

namespace mmq {

namespace {

std::string replaced(std::string text, const std::string& pattern, const std::string& with) {
    for (std::size_t at = text.find(pattern); at != std::string::npos;
         at = text.find(pattern, at + with.size())) {
        text.replace(at, pattern.size(), with);
    }
    return text;
}

// A text as one word of a shell.
std::string shellWord(const std::string& text) {
    return std::string("'").append(replaced(text, "'", "'\\''")).append("'");
}

bool isWord(const OptionDescription& option) { return !option.isByPlace; }

// The words that may stand where an option or an argument by place may begin.
std::string wordsOf(const CommandDescription& command) {
    std::string words;
    for (const OptionDescription& option : command.options) {
        const std::vector<std::string>& list = isWord(option) ? option.names : option.choices;
        words += words.empty() || list.empty() ? "" : " ";
        words += joined(list, " ");
    }
    return words;
}

// What completes the value behind an option; empty where files do.
std::string bashValues(const OptionDescription& option) {
    if (!option.choices.empty()) {
        return "words=" + shellWord(joined(option.choices, " "));
    }
    if (option.value == "CLASS") {
        return "words=$(_mmq_classes)";
    }
    return option.value.find("FILE") != std::string::npos ? "return" : "compopt +o default; return";
}

std::string bashCases(const CommandDescription& command) {
    std::string cases;
    for (const OptionDescription& option : command.options) {
        if (isWord(option) && !option.value.empty()) {
            cases += "        " + command.name + ":" +
                     joined(option.names, (" | " + command.name + ":").c_str()) + ") " +
                     bashValues(option) + " ;;\n";
        }
    }
    return cases;
}

std::string zshAction(const OptionDescription& option) {
    if (!option.choices.empty()) {
        return std::string(":value:(").append(joined(option.choices, " ")).append(")");
    }
    if (option.value == "CLASS") {
        return ":class:_mmq_classes";
    }
    const bool takesFile = option.value.find("FILE") != std::string::npos ||
                           (option.isByPlace && option.value != "TEXT");
    return std::string(":")
        .append(option.value.empty() ? option.names[0] : option.value)
        .append(takesFile ? ":_files" : ":");
}

// The argument of _arguments that stands for an option.
std::string zshOption(const OptionDescription& option) {
    if (option.isByPlace) {
        const char* const place = option.choices.empty() ? "*" : "1";
        return shellWord(std::string(place).append(zshAction(option)));
    }
    std::string help = replaced(replaced(option.help, "[", "\\["), "]", "\\]");
    help = std::string("[").append(help).append("]");
    help = shellWord(help + (option.value.empty() ? "" : zshAction(option)));
    // A long name takes its value behind an equals sign, too.
    std::vector<std::string> names = option.names;
    for (std::string& name : names) {
        name += name.size() > 2 && !option.value.empty() ? "=" : "";
    }
    return names.size() == 1
               ? names[0] + help
               : "'(" + joined(option.names, " ") + ")'{" + joined(names, ",") + "}" + help;
}

// What completes the value of an option.
std::string fishValues(const OptionDescription& option) {
    if (option.value.empty()) {
        return "";
    }
    if (option.value == "CLASS") {
        return " -xa '(__mmq_classes)'";
    }
    if (!option.choices.empty()) {
        return " -xa " + shellWord(joined(option.choices, " "));
    }
    return option.value.find("FILE") != std::string::npos ? " -rF" : " -x";
}

std::string fishOption(const std::string& condition, const OptionDescription& option) {
    std::string line = "complete -c mmq -n " + condition;
    if (option.isByPlace) {
        return option.choices.empty()
                   ? ""
                   : line + " -fa " + shellWord(joined(option.choices, " ")) + "\n";
    }
    for (const std::string& name : option.names) {
        line += name.size() == 2 ? " -s " + name.substr(1) : " -l " + name.substr(2);
    }
    return line + fishValues(option) + " -d " + shellWord(option.help) + "\n";
}

}  // namespace

std::string bashCompletion(const ProgramDescription& description) {
    std::string options;
    std::string cases;
    std::string commands = wordsOf(description.program);
    for (const CommandDescription& command : description.commands) {
        commands += " " + command.name;
        options += "        " + command.name + ") words=" + shellWord(wordsOf(command)) + " ;;\n";
        cases += bashCases(command);
    }
    return "# Completion of mmq for bash, as `mmq generate bash` writes it.\n"
           "_mmq_classes() {\n"
           "    local i model=\n"
           "    for ((i = 1; i + 1 < ${#COMP_WORDS[@]}; ++i)); do\n"
           "        [[ ${COMP_WORDS[i]} == --model ]] || continue\n"
           "        [[ ${COMP_WORDS[i + 1]} != = ]] || ((++i))\n"
           "        model=$(xargs printf %s <<<\"${COMP_WORDS[i + 1]}\" 2>/dev/null)\n"
           "    done\n"
           "    mmq info --model \"${model/#\\~/$HOME}\" --format csv 2>/dev/null | sed '1d; "
           "s/,.*//'\n"
           "}\n"
           "_mmq() {\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]} words=\n"
           "    COMPREPLY=()\n"
           "    # The shell takes --option=value for three words.\n"
           "    [[ $option != = ]] || option=${COMP_WORDS[COMP_CWORD - 2]}\n"
           "    [[ $word != = ]] || word=\n"
           "    case ${COMP_WORDS[1]} in\n" +
           options +
           "    esac\n"
           "    ((COMP_CWORD > 1)) || words=" +
           shellWord(commands) +
           "\n"
           "    case ${COMP_WORDS[1]}:$option in\n" +
           cases +
           "    esac\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
           "}\n"
           "complete -o default -F _mmq mmq\n";
}

std::string zshCompletion(const ProgramDescription& description) {
    std::string commands;
    std::string cases;
    for (const CommandDescription& command : description.commands) {
        commands.append("        ")
            .append(shellWord(command.name + ":" + command.help))
            .append("\n");
        cases += "        " + command.name + ") _arguments -s";
        for (const OptionDescription& option : command.options) {
            cases += " \\\n            " + zshOption(option);
        }
        cases += " ;;\n";
    }
    std::string options;
    for (const OptionDescription& option : description.program.options) {
        options.append(" ").append(zshOption(option));
    }
    return "#compdef mmq\n"
           "# Completion of mmq for zsh, as `mmq generate zsh` writes it.\n"
           "_mmq_classes() {\n"
           "    local -a classes\n"
           "    local model=${${words[(r)--model=*]}#--model=}\n"
           "    [[ -n $model ]] || model=${words[${words[(i)--model]} + 1]}\n"
           "    classes=(${(f)\"$(mmq info --model ${(Q)~model} --format csv 2>/dev/null |\n"
           "        sed '1d; s/,.*//')\"})\n"
           "    compadd -a classes\n"
           "}\n"
           "_mmq() {\n"
           "    local -a commands=(\n" +
           commands +
           "    )\n"
           "    if ((CURRENT == 2)); then\n"
           "        _describe command commands\n"
           "        _arguments" +
           options +
           "\n"
           "        return\n"
           "    fi\n"
           "    shift words\n"
           "    ((CURRENT--))\n"
           "    case $words[1] in\n" +
           cases +
           "    esac\n"
           "}\n"
           "_mmq \"$@\"\n";
}

std::string fishCompletion(const ProgramDescription& description) {
    std::string lines =
        "# Completion of mmq for fish, as `mmq generate fish` writes it.\n"
        "function __mmq_classes\n"
        "    set -l words (commandline -opc)\n"
        "    set -l at (contains -i -- --model $words); or return\n"
        "    mmq info --model $words[(math $at + 1)] --format csv 2>/dev/null | sed '1d; s/,.*//'\n"
        "end\n";
    for (const CommandDescription& command : description.commands) {
        lines += "complete -c mmq -n __fish_use_subcommand -fa " + command.name + " -d " +
                 shellWord(command.help) + "\n";
        for (const OptionDescription& option : command.options) {
            lines += fishOption("'__fish_seen_subcommand_from " + command.name + "'", option);
        }
    }
    for (const OptionDescription& option : description.program.options) {
        lines += fishOption("__fish_use_subcommand", option);
    }
    return lines;
}

}  // namespace mmq
