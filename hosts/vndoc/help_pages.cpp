// Shell completion and the manual page, made from the same commands and options as --help.
#include <algorithm>
#include <memory>
#include <ostream>

#include "command.h"

namespace vndoc {
namespace {

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

// "--json --help": what can be typed after a dash, in front of the command or behind it.
std::string OptionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* level = &app; level != nullptr; level = level->get_parent()) {
    for (const CLI::Option* option : level->get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
      for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    }
  }
  std::string line;
  for (auto name = names.begin(); name != names.end(); ++name) {
    if (std::find(names.begin(), name, *name) == name) line += ' ' + *name;
  }
  return line.empty() ? line : line.substr(1);
}

// What can be typed in place of a file: the values that an argument is restricted to, which are
// part of its type's name, "TEXT:{bash,zsh}".
std::string Words(const CLI::App& app) {
  std::string words;
  for (const CLI::Option* option : app.get_options()) {
    const std::string type = option->get_type_name();
    const size_t open = type.find('{');
    if (!option->get_positional() || open == type.npos) continue;
    words += ' ' + type.substr(open + 1, type.find('}', open) - open - 1);
  }
  std::replace(words.begin(), words.end(), ',', ' ');
  return words.empty() ? words : words.substr(1);
}

std::string CommandNames(const CLI::App& app) {
  std::string names;
  for (const CLI::App* command : CommandsOf(app)) names += ' ' + command->get_name();
  return names.empty() ? names : names.substr(1);
}

void WriteCases(const CLI::App& app, std::ostream& out) {
  for (const CLI::App* command : CommandsOf(app)) {
    out << "    " << command->get_name() << ") options=\"" << OptionNames(*command) << '"';
    const std::string words = Words(*command);
    if (!words.empty()) out << " values=\"" << words << '"';
    out << " ;;\n";
  }
  out << "    *) options=\"" << OptionNames(app) << "\" ;;\n  esac\n";
}

void WriteBash(const CLI::App& app, std::ostream& out) {
  out << "# bash completion for vndoc: source <(vndoc completion bash)\n"
         "_vndoc() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} options values=\n"
         "  if [[ $COMP_CWORD -eq 1 && $word != -* ]]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -W \""
      << CommandNames(app)
      << "\" -- \"$word\")\n"
         "    return\n"
         "  fi\n"
         "  case ${COMP_WORDS[1]} in\n";
  WriteCases(app, out);
  out << "  if [[ $word == -* ]]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$word\")\n"
         "  else\n"
         "    mapfile -t COMPREPLY < <(compgen -W \"$values\" -- \"$word\"; compgen -f -- "
         "\"$word\")\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _vndoc vndoc\n";
}

void WriteZsh(const CLI::App& app, std::ostream& out) {
  out << "#compdef vndoc\n"
         "# zsh completion for vndoc: source <(vndoc completion zsh)\n"
         "_vndoc() {\n"
         "  local options values=\n"
         "  if [[ $CURRENT -eq 2 && $PREFIX != -* ]]; then\n"
         "    compadd -- "
      << CommandNames(app)
      << "\n"
         "    return\n"
         "  fi\n"
         "  case $words[2] in\n";
  WriteCases(app, out);
  out << "  if [[ $PREFIX == -* ]]; then\n"
         "    compadd -- ${=options}\n"
         "  else\n"
         "    compadd -- ${=values}\n"
         "    _files\n"
         "  fi\n"
         "}\n"
         // In a file of the function path it is called at once; sourced, it is only made known.
         "if [[ $funcstack[1] == _vndoc ]]; then _vndoc \"$@\"; else compdef _vndoc vndoc; fi\n";
}

// A text as roff takes it: nothing in it is a command.
std::string Roff(const std::string& text) {
  std::string roff;
  bool line_start = true;
  for (const char c : text) {
    if (line_start && (c == '.' || c == '\'')) roff += "\\&";
    if (c == '\\') {
      roff += "\\e";
    } else if (c == '-') {
      roff += "\\-";
    } else {
      roff += c;
    }
    line_start = c == '\n';
  }
  return roff;
}

void WriteOptions(const CLI::App& app, std::ostream& out) {
  for (const CLI::Option* option : app.get_options()) {
    const bool positional = option->get_positional();
    const std::string name = option->get_name(positional, !positional);
    out << ".TP\n.B " << Roff(name) << '\n' << Roff(option->get_description());
    if (!option->get_envname().empty()) out << " (or " << option->get_envname() << ")";
    out << '\n';
  }
}

void WriteBlock(const std::string& text, std::ostream& out) {
  if (!text.empty()) out << ".PP\n.nf\n" << Roff(text) << "\n.fi\n";
}

void WriteManual(const CLI::App& app, std::ostream& out) {
  out << ".TH VNDOC 1 \"\" \"VNDoc6 " << VNDOC6_VERSION << "\"\n.SH NAME\nvndoc \\- "
      << Roff(app.get_description())
      << "\n.SH SYNOPSIS\n.B vndoc\n[OPTIONS] COMMAND ...\n.SH OPTIONS\n";
  WriteOptions(app, out);
  out << ".SH COMMANDS\n";
  for (const CLI::App* command : CommandsOf(app)) {
    out << ".SS " << Roff(command->get_name()) << '\n';
    WriteBlock(command->get_description(), out);
    WriteOptions(*command, out);
    WriteBlock(command->get_footer(), out);
  }
  out << ".SH EXIT STATUS\n";
  WriteBlock(app.get_footer(), out);
}

}  // namespace

void AddCompletion(CLI::App& app, Context& context) {
  auto* const command =
      app.add_subcommand("completion", "Writes what a shell needs to complete command lines");
  const auto shell = std::make_shared<std::string>();
  command->add_option("SHELL", *shell, "bash or zsh")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh"}));
  command->callback([shell, &app, &context] {
    *shell == "bash" ? WriteBash(app, context.out) : WriteZsh(app, context.out);
  });
}

void AddManualPage(CLI::App& app, Context& context) {
  auto* const command = app.add_subcommand("man", "Writes the manual page: vndoc man | man -l -");
  command->callback([&app, &context] { WriteManual(app, context.out); });
}

}  // namespace vndoc
