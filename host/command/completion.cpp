#include "host/command/completion.h"

#include "host/command/standard_output.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace host {

namespace {

// The kind of value of an option or of a positional argument.
enum class Value { NONE, ANYTHING, FILE, FOLDER, CHOICE };

struct Argument {
    std::vector<std::string> names;  // with their dashes; empty for a positional argument
    std::string help;
    Value value;
    std::string choices;  // separated by blanks; empty unless the value is one of them
    bool is_repeatable;
};

using Command = const CLI::App*;

std::vector<Command> commands_of(const CLI::App& app) {
    return app.get_subcommands([](Command) { return true; });
}

// Returns the values that a type allows, such as "FORMAT:{text,json}".
std::string choices_of(const std::string& type) {
    const std::size_t begin = type.find('{');
    if (begin == std::string::npos) {
        return "";
    }
    std::string choices = type.substr(begin + 1, type.find('}') - begin - 1);
    std::ranges::replace(choices, ',', ' ');
    return choices;
}

Value value_of(const CLI::Option& option) {
    constexpr std::array<std::string_view, 3> FILES{"PLACE", "PATH", "SOURCE"};
    const std::string type = option.get_positional() ? option.get_name(true) : option.get_type_name();
    if (option.get_items_expected_max() == 0) {
        return Value::NONE;
    }
    if (!choices_of(option.get_type_name()).empty()) {
        return Value::CHOICE;
    }
    if (type == "DIR") {
        return Value::FOLDER;
    }
    return std::ranges::find(FILES, type) != FILES.end() ? Value::FILE : Value::ANYTHING;
}

std::vector<Argument> arguments_of(const CLI::App& command) {
    std::vector<Argument> arguments;
    for (const CLI::Option* const option : command.get_options()) {
        Argument argument{.names = {},
                          .help = option->get_description(),
                          .value = value_of(*option),
                          .choices = choices_of(option->get_type_name()),
                          .is_repeatable = option->get_items_expected_max() > 1};
        for (const std::string& name : option->get_snames()) {
            argument.names.push_back("-" + name);
        }
        for (const std::string& name : option->get_lnames()) {
            argument.names.push_back("--" + name);
        }
        arguments.push_back(argument);
    }
    return arguments;
}

std::string with_backslashes(std::string_view text, std::string_view before) {
    std::string result;
    for (const char character : text) {
        result += before.find(character) == std::string_view::npos ? "" : "\\";
        result += character;
    }
    return result;
}

// Returns the text in single quotes. Between them only the quote is special in bash and zsh.
std::string single_quoted(std::string_view text) {
    std::string result = "'";
    for (const char character : text) {
        result += character == '\'' ? "'\\''" : std::string(1, character);
    }
    return result + "'";
}

std::string reply_in_bash(const Argument& argument) {
    switch (argument.value) {
    case Value::FILE:
        return "_wiki_scope_reply -f";
    case Value::FOLDER:
        return "_wiki_scope_reply -d";
    case Value::CHOICE:
        return "_wiki_scope_reply -W " + single_quoted(argument.choices);
    default:
        return ":";
    }
}

void write_bash(std::ostream& out, const CLI::App& app) {
    std::string names;
    out << "# bash completion for wiki-scope\n"
           "_wiki_scope_reply() {\n"
           "    [ \"$1\" = -W ] || compopt -o filenames 2>/dev/null\n"
           "    mapfile -t COMPREPLY < <(compgen \"$@\" -- \"$word\")\n"
           "}\n"
           "_wiki_scope() {\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]}\n"
           "    [ \"$word\" != = ] || word=  # bash splits --format=json\n"
           "    [ \"$before\" != = ] || before=${COMP_WORDS[COMP_CWORD-2]}\n"
           "    [ \"$COMP_CWORD\" -gt 1 ] || command= before=\n"
           "    COMPREPLY=()\n"
           "    case \"$command $before $word\" in\n";
    for (const Command command : commands_of(app)) {
        const std::string name = command->get_name();
        std::string options;
        std::string rest;
        for (const Argument& argument : arguments_of(*command)) {
            for (const std::string& option : argument.names) {
                options.append(options.empty() ? "" : " ").append(option);
                if (argument.value != Value::NONE) {
                    const std::string begun = std::string(name).append(" ").append(option).append(" ");
                    out << "    " << single_quoted(begun) << "*) " << reply_in_bash(argument) << " ;;\n";
                }
            }
            rest = argument.names.empty() ? reply_in_bash(argument) : rest;
        }
        out << "    " << single_quoted(name + " ") << "*' -'*) _wiki_scope_reply -W " << single_quoted(options)
            << " ;;\n";
        if (!rest.empty()) {
            out << "    " << single_quoted(name + " ") << "*) " << rest << " ;;\n";
        }
        names.append(names.empty() ? "" : " ").append(name);
    }
    out << "    '  '*) _wiki_scope_reply -W " << single_quoted(names + " --help --version") << " ;;\n"
        << "    esac\n"
           "}\n"
           "complete -F _wiki_scope wiki-scope\n";
}

std::string action_in_zsh(const Argument& argument) {
    switch (argument.value) {
    case Value::FILE:
        return "_files";
    case Value::FOLDER:
        return "_files -/";
    case Value::CHOICE:
        return "(" + argument.choices + ")";
    default:
        return " ";
    }
}

void write_zsh(std::ostream& out, const CLI::App& app) {
    out << "#compdef wiki-scope\n"
           "_wiki_scope() {\n"
           "    if (( CURRENT == 2 )); then\n"
           "        local -a commands=(\n";
    for (const Command command : commands_of(app)) {
        out << "            " << single_quoted(command->get_name() + ":" + command->get_description()) << '\n';
    }
    out << "        )\n"
           "        _describe command commands\n"
           "        return\n"
           "    fi\n"
           "    local command=$words[2]\n"
           "    shift words\n"
           "    (( CURRENT-- ))\n"
           "    case $command in\n";
    for (const Command command : commands_of(app)) {
        out << "    " << command->get_name() << ")\n        _arguments";
        for (const Argument& argument : arguments_of(*command)) {
            const std::string help = with_backslashes(argument.help, "[]:\\");
            const std::string value = argument.value == Value::NONE ? "" : ":" + help + ":" + action_in_zsh(argument);
            const std::string times = argument.is_repeatable ? "*" : "";
            for (const std::string& name : argument.names) {
                out << " \\\n            "
                    << single_quoted(
                           (times + name).append(value.empty() ? "[" : "=[").append(help).append("]").append(value));
            }
            if (argument.names.empty()) {
                out << " \\\n            " << single_quoted("*" + value);
            }
        }
        out << "\n        ;;\n";
    }
    out << "    esac\n"
           "}\n"
           "_wiki_scope \"$@\"\n";
}

std::string values_in_fish(const Argument& argument) {
    switch (argument.value) {
    case Value::NONE:
        return "";
    case Value::FILE:
        return " -r -F";
    case Value::FOLDER:
        return " -x -a '(__fish_complete_directories)'";
    case Value::CHOICE:
        return " -x -a '" + argument.choices + "'";
    default:
        return " -x";
    }
}

void write_fish(std::ostream& out, const CLI::App& app) {
    const auto described = [](const std::string& help) { return " -d '" + with_backslashes(help, "'\\") + "'\n"; };
    out << "# fish completion for wiki-scope\n"
           "complete -c wiki-scope -f\n";
    for (const Command command : commands_of(app)) {
        const std::string name = command->get_name();
        const std::string here = "complete -c wiki-scope -n '__fish_seen_subcommand_from " + name + "'";
        out << "complete -c wiki-scope -n __fish_use_subcommand -a " << name << described(command->get_description());
        for (const Argument& argument : arguments_of(*command)) {
            out << here;
            for (const std::string& option : argument.names) {
                out << (option.starts_with("--") ? " -l " + option.substr(2) : " -s " + option.substr(1));
            }
            out << values_in_fish(argument) << described(argument.help);
        }
    }
}

void write_completion(std::ostream& out, const CLI::App& app, const std::string& shell) {
    if (shell == "bash") {
        write_bash(out, app);
    } else if (shell == "zsh") {
        write_zsh(out, app);
    } else {
        write_fish(out, app);
    }
}

}  // namespace

void add_completion_command(CLI::App& app) {
    const auto shell = std::make_shared<std::string>();
    CLI::App& completion = *app.add_subcommand("completion", "Print a completion script for a shell");
    completion.add_option("SHELL", *shell, "The shell")
        ->required()
        ->check(CLI::IsMember(std::vector<std::string>{"bash", "zsh", "fish"}));
    completion.callback([&app, shell] { print([&](std::ostream& out) { write_completion(out, app, *shell); }); });
}

}  // namespace host
