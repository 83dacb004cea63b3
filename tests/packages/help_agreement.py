#!/usr/bin/env python3
"""Compares the commands and options of "tessary --help" with the shell completions and man pages.

help_agreement.py TESSARY PREFIX    PREFIX is where the package is installed or unpacked, such as /usr

Prints one line for each disagreement, and "N passed, N failed" at the end.
"""
import gzip
import re
import subprocess
import sys
from pathlib import Path


def run(*command, **keywords):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=60, **keywords).stdout


def part(text, title):
    """The lines of one part of a help text, up to the next empty line."""
    return text.split(f"\n{title}:\n", 1)[1].split("\n\n", 1)[0].splitlines()


def options_in(lines):
    return {word for line in lines for word in re.findall(r"^ {2}((?:-\w, )?--[\w-]+)", line)
            for word in word.split(", ")}


def help_of(tessary):
    """Command to its options; "" stands for the help without a command."""
    text = run(tessary, "--help")
    found = {"": options_in(part(text, "Optionen"))}
    for line in part(text, "Befehle"):
        command = line.split()[0]
        found[command] = options_in(part(run(tessary, command, "--help"), "Optionen"))
    return found


def bash_words(file, *words):
    script = ('compopt() { :; }; complete() { :; }; . "$1"; shift; COMP_WORDS=(tessary "$@"); COMP_CWORD=$#; '
              '_tessary; printf "%s\\n" "${COMPREPLY[@]}"')
    return set(run("bash", "-c", script, "bash", str(file), *words).split())


def zsh_arguments(file, command):
    """What the function hands to _arguments for a command, or for the first word."""
    script = '''
      _describe() { print -rl -- "command ${(@P)^argv[-1]%%:*}" }
      _arguments() {
        if [[ $1 == -C ]]; then
          [[ -z $wanted ]] && print -rl -- "$@"
          words=($wanted)
          state=${${wanted:+rest}:-command}
        else
          print -rl -- "$@"
        fi
      }
      wanted=$2
      . $1'''
    text = run("zsh", "-f", "-c", script, "zsh", str(file), command)
    options = set(re.findall(r"^(?:\([^)]*\)|\*)?(--?[a-z][\w-]*)\[", text, re.M))
    lists = re.findall(r"^(?:command (\S+)|1:Befehl:\((.*)\))$", text, re.M)
    return options, {word for found in lists for words in found for word in words.split()}


def fish_words(file, line):
    text = run("fish", "--no-config", "-c", f"source {file}; complete -C '{line}'")
    return {row.split("\t")[0] for row in text.splitlines()}


def page_text(file):
    with gzip.open(file, "rt", encoding="utf-8") if file.suffix == ".gz" else open(file, encoding="utf-8") as page:
        return page.read().replace("\\-", "-")


class Checks:
    def __init__(self):
        self.passed = 0
        self.failed = 0

    def same(self, what, found, wanted):
        if found == wanted:
            self.passed += 1
            return
        self.failed += 1
        print(f"{what}: missing {sorted(wanted - found)}, too many {sorted(found - wanted)}")


def check_page(checks, name, text, help_texts):
    usages = {}
    for line in re.findall(r'^\.SS "tessary ([^"]*)"', text, re.M):
        command = line.split()[0]
        usages[command] = set(re.findall(r"--[\w-]+", line)) | {"-h", "--help"}
    for command, options in help_texts.items():
        if command:
            checks.same(f"{name}, {command}", usages.get(command, set()), options)
    checks.same(f"{name}, commands", set(usages), set(help_texts) - {""})
    described = set()
    for tag in re.findall(r"^\.TP\n\.B[IR]? (-.*)", text, re.M):
        described |= set(re.findall(r"(?<![\w-])--?[\w-]*", tag))
    checks.same(f"{name}, options", described - {"--"}, set().union(*help_texts.values()))


def main(tessary, prefix):
    share = Path(prefix) / "share"
    bash = share / "bash-completion/completions/tessary"
    zsh = share / "zsh/vendor-completions/_tessary"
    fish = share / "fish/vendor_completions.d/tessary.fish"
    help_texts = help_of(tessary)
    commands = set(help_texts) - {""}
    checks = Checks()
    checks.same("commands that are known", {"diff", "convert-folder", "help"} & commands,
                {"diff", "convert-folder", "help"})
    for command, options in help_texts.items():
        name = command or "without a command"
        words = [command] if command else []
        checks.same(f"bash, {name}", bash_words(bash, *words, "-"), options)
        checks.same(f"zsh, {name}", zsh_arguments(zsh, command)[0], options)
        line = " ".join(["tessary", *words, "-"])
        checks.same(f"fish, {name}", fish_words(fish, line) | fish_words(fish, line + "-"), options)
    checks.same("bash, commands", bash_words(bash, ""), commands)
    checks.same("bash, answers", bash_words(bash, "convert", "--on-backup-failure", "=", "c"), {"continue"})
    checks.same("zsh, commands", zsh_arguments(zsh, "")[1], commands)
    checks.same("zsh, commands to explain", zsh_arguments(zsh, "help")[1], commands)
    checks.same("fish, commands", fish_words(fish, "tessary "), commands)
    checks.same("fish, answers", fish_words(fish, "tessary convert --on-backup-failure "), {"abort", "continue"})
    for folder in ("man/man1", "man/de/man1"):
        pages = list((share / folder).glob("tessary.1*"))
        checks.same(f"{folder}, number of pages", {len(pages)}, {1})
        for page in pages:
            check_page(checks, folder, page_text(page), help_texts)
    print(f"{checks.passed} passed, {checks.failed} failed")
    return 1 if checks.failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
