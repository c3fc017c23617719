#!/usr/bin/env python3
"""generate.py TOOL [FOLDER]: makes the man page and the completions from what the command says about itself.

They are kept here, ready to be installed; a test makes them anew and compares. After a change of the command line:

    tools/pages/generate.py build/dev/tools/koine
"""

import pathlib
import re
import subprocess
import sys
from dataclasses import dataclass, field

HERE = pathlib.Path(__file__).resolve().parent

# What can be said about the values of options and arguments beyond their help. An option has the same values in
# every command.
CHOICES = {
    "--mode": "AUTO MOBILE ONLY_META ONLY_STATUS",
    "--auth": "none basic digest digest-sha256",
    "--transport": "TCP UDP",
    "--encoding": "H264 H265 MPEG4 JPEG",
}
CATEGORIES = "Login Capability Media Video Camera Notification Misc VideoAnalytics"
LIST_MODELS = "koine simulate --list-models 2>/dev/null | awk 'NR > 1 { print $1 }'"


@dataclass
class Option:
    names: list
    value: str
    text: str

    def long(self):
        return next(name for name in self.names if name.startswith("--"))


@dataclass
class Command:
    name: str
    text: str
    usage: str = ""
    arguments: list = field(default_factory=list)
    options: list = field(default_factory=list)
    notes: str = ""


def help_of(tool, *arguments):
    return subprocess.run([tool, *arguments, "--help"], check=True, capture_output=True, text=True).stdout


def section(text, title):
    """The lines below a title, up to the next empty line."""
    found = re.search(rf"^{title}:\n((?:.+\n)+)", text, re.MULTILINE)
    return found.group(1).splitlines() if found else []


def rows(text, title):
    """Pairs of name and description; a description may go on below."""
    result = []
    for line in section(text, title):
        name, _, description = line.strip().partition("  ")
        if line.startswith(" " * 20):
            result[-1][1] += (" " + line.strip()) if result[-1][1] else line.strip()
        else:
            result.append([name, description.strip()])
    return result


def read_option(row):
    words = row[0].removesuffix(" ...").split()
    return Option(words[0].split(","), words[1] if len(words) > 1 else "", row[1])


def read_command(tool, name, text):
    shown = help_of(tool, name)
    last = list(re.finditer(r"^Options:\n(?:.+\n)+", shown, re.MULTILINE))[-1]
    return Command(
        name,
        text,
        re.search(r"^Usage: koine (.+)", shown, re.MULTILINE).group(1),
        [row[0].removesuffix(" ...") for row in rows(shown, "Arguments")],
        [read_option(row) for row in rows(shown, "Options")],
        shown[last.end():].strip("\n"),
    )


# ---- The man page

def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.MULTILINE)


def man_option(option):
    names = ", ".join(f"\\fB{roff(name)}\\fR" for name in option.names)
    value = f" \\fI{roff(option.value)}\\fR" if option.value else ""
    return f".TP\n{names}{value}\n{roff(option.text)}\n"


def man_command(command):
    text = f".SS koine {roff(command.usage)}\n{roff(command.text)}.\n"
    text += "".join(man_option(option) for option in command.options)
    if command.notes:
        text += f".PP\n.nf\n{roff(command.notes)}\n.fi\n"
    return text


def man_page(commands):
    template = (HERE / "koine.1.in").read_text()
    return template.replace("@COMMANDS@\n", "".join(map(man_command, commands)))


# ---- Completions

def all_options(commands):
    """Each option once, by its long name."""
    return {option.long(): option for command in commands for option in command.options}


def value_kind(option):
    if option.long() in CHOICES:
        return "choices"
    if option.long() == "--model":
        return "models"
    return {"FILE": "files", "FOLDER": "folders"}.get(option.value, "text" if option.value else "none")


def argument_kind(command):
    if "FILE" in command.arguments:
        return "files"
    return "categories" if "CATEGORY" in command.arguments else "none"


BASH_VALUES = {
    "files": "compopt -o filenames 2>/dev/null\n            mapfile -t COMPREPLY < <(compgen -f -- \"$current\")",
    "folders": "compopt -o filenames 2>/dev/null\n            mapfile -t COMPREPLY < <(compgen -d -- \"$current\")",
    "models": f'mapfile -t COMPREPLY < <(compgen -W "$({LIST_MODELS})" -- "$current")',
    "text": ":",
}


def bash_words(words):
    return f"mapfile -t COMPREPLY < <(compgen -W '{words}' -- \"$current\")"


def bash_values(commands):
    arms = {}
    for option in all_options(commands).values():
        kind = value_kind(option)
        if kind == "none":
            continue
        action = bash_words(CHOICES[option.long()]) if kind == "choices" else BASH_VALUES[kind]
        arms.setdefault(action, []).extend(option.names)
    return "".join(f"        {' | '.join(names)})\n            {action}\n            return\n            ;;\n"
                   for action, names in arms.items())


def bash(commands):
    names = " ".join(command.name for command in commands)
    options = "".join(f"        {command.name}) options='"
                      f"{' '.join(name for option in command.options for name in option.names)}' ;;\n"
                      for command in commands)
    files = " | ".join(command.name for command in commands if argument_kind(command) == "files")
    categories = " | ".join(command.name for command in commands if argument_kind(command) == "categories")
    return f"""\
# Completion of koine for bash. Made by generate.py.
_koine() {{
    local current=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD - 1]}}
    local command=${{COMP_WORDS[1]}} options=
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        {bash_words(names + ' -h --help --version')}
        return
    fi
    case $previous in
{bash_values(commands)}    esac
    case $command in
{options}    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    case $command in
        {files})
            {BASH_VALUES['files']}
            ;;
        {categories})
            {bash_words(CATEGORIES)}
            ;;
    esac
}}
complete -F _koine koine
"""


def zsh_text(text):
    return text.replace("'", "'\\''").replace("[", "\\[").replace("]", "\\]").replace(":", "\\:")


ZSH_VALUES = {"files": ":_files", "folders": ":_files -/", "models": f":($({LIST_MODELS}))", "text": ":", "none": ""}


def zsh_option(option):
    kind = value_kind(option)
    action = f":({CHOICES[option.long()]})" if kind == "choices" else ZSH_VALUES[kind]
    if kind == "models":
        action = ":_koine_models"
    value = f":{option.value}{action}" if option.value else ""
    rest = f"[{zsh_text(option.text)}]{value}'"
    if option.long() == "--fault":
        return f"'*{option.long()}{rest}"
    if len(option.names) == 1:
        return f"'{option.long()}{rest}"
    return f"'({' '.join(option.names)})'{{{','.join(option.names)}}}'{rest}"


def zsh_command(command):
    arguments = {"files": "'*:file:_files'", "categories": f"'*:category:({CATEGORIES})'", "none": "'*: :'"}
    specs = [zsh_option(option) for option in command.options] + [arguments[argument_kind(command)]]
    return f"        {command.name})\n            _arguments -s \\\n                " + \
        " \\\n                ".join(specs) + "\n            ;;\n"


def zsh(commands):
    names = "\n".join(f"        '{command.name}:{zsh_text(command.text)}'" for command in commands)
    return f"""\
#compdef koine
# Completion of koine for zsh. Made by generate.py.
_koine_models() {{
    compadd -- ${{(f)"$({LIST_MODELS})"}}
}}

_koine() {{
    local -a commands
    commands=(
{names}
    )
    if ((CURRENT == 2)); then
        _describe command commands
        _arguments '(-h --help)'{{-h,--help}}'[show this help]' '--version[show the version]'
        return
    fi
    shift words
    ((CURRENT--))
    case $words[1] in
{''.join(map(zsh_command, commands))}    esac
}}

_koine "$@"
"""


def fish_text(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


def fish_option(command, option):
    names = "".join(f" -l {name[2:]}" if name.startswith("--") else f" -s {name[1:]}" for name in option.names)
    kind = value_kind(option)
    value = {
        "none": "",
        "files": " -r -F",
        "folders": " -x -a '(__fish_complete_directories)'",
        "models": f" -x -a {fish_text('(' + LIST_MODELS + ')')}",
        "text": " -x",
        "choices": f" -x -a '{CHOICES.get(option.long(), '')}'",
    }[kind]
    return f"complete -c koine -n '__fish_seen_subcommand_from {command.name}'{names}{value} " \
           f"-d {fish_text(option.text)}\n"


def fish(commands):
    text = "# Completion of koine for fish. Made by generate.py.\ncomplete -c koine -f\n"
    text += "complete -c koine -n __fish_use_subcommand -s h -l help -d 'show this help'\n"
    text += "complete -c koine -n __fish_use_subcommand -l version -d 'show the version'\n"
    for command in commands:
        text += f"complete -c koine -n __fish_use_subcommand -a {command.name} -d {fish_text(command.text)}\n"
    for command in commands:
        text += "".join(fish_option(command, option) for option in command.options)
        seen = f"complete -c koine -n '__fish_seen_subcommand_from {command.name}'"
        if argument_kind(command) == "files":
            text += f"{seen} -F\n"
        if argument_kind(command) == "categories":
            text += f"{seen} -a '{CATEGORIES}'\n"
    return text


def main():
    tool = str(pathlib.Path(sys.argv[1]).resolve())
    folder = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else HERE
    commands = [read_command(tool, name, text) for name, text in rows(help_of(tool), "Commands")]
    if not commands:
        sys.exit("the help of the command names no commands")
    for name, make in {"koine.1": man_page, "koine.bash": bash, "_koine": zsh, "koine.fish": fish}.items():
        (folder / name).write_text(make(commands))


if __name__ == "__main__":
    main()
