// Shell completion and the manual page, made from the same commands and options as --help.
#include <memory>
#include <ostream>

#include "command.h"

namespace vndoc {
namespace {

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

// "--json --help": what can be typed after a dash.
std::string OptionNames(const CLI::App& app) {
  std::string names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names += " --" + name;
    for (const std::string& name : option->get_snames()) names += " -" + name;
  }
  return names.empty() ? names : names.substr(1);
}

std::string CommandNames(const CLI::App& app) {
  std::string names;
  for (const CLI::App* command : CommandsOf(app)) names += ' ' + command->get_name();
  return names.empty() ? names : names.substr(1);
}

void WriteCases(const CLI::App& app, std::ostream& out) {
  for (const CLI::App* command : CommandsOf(app)) {
    out << "    " << command->get_name() << ") options=\"" << OptionNames(*command) << ' '
        << OptionNames(app) << "\" ;;\n";
  }
  out << "    *) options=\"" << OptionNames(app) << "\" ;;\n  esac\n";
}

void WriteBash(const CLI::App& app, std::ostream& out) {
  out << "# bash completion for vndoc: source <(vndoc completion bash)\n"
         "_vndoc() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} options\n"
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
         "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _vndoc vndoc\n";
}

void WriteZsh(const CLI::App& app, std::ostream& out) {
  out << "#compdef vndoc\n"
         "# zsh completion for vndoc: source <(vndoc completion zsh)\n"
         "_vndoc() {\n"
         "  local options\n"
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
         "    _files\n"
         "  fi\n"
         "}\n"
         "compdef _vndoc vndoc\n";
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
