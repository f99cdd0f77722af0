#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Holds what is shipped beside the programs against them: check_packaging.py WHAT SOURCE BUILD.

WHAT: completions (and manual pages, against each program's --help), control (packages against scripts/setup), languages
(texts of the desktop's files against the catalogues).
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

PROGRAMS = ["Orbivue", "orbivue-render", "orbivue-convert", "orbivue-modeldb"]
MODELDB_COMMANDS = "import export remove list check backup restore upgrade token serve"
# Options of ours that are in no summary, and the toolkit's that a page names.
HIDDEN = {"Orbivue": {"version"}}
TOOLKIT = {"Orbivue": {"display"}}
# Compilers and libraries for tests; what debhelper brings; this is built for distributions without it.
ONLY_IN_SETUP = {"g++", "ccache", "lld", "libgtest-dev", "libbenchmark-dev"}
ONLY_IN_CONTROL = {"debhelper-compat", "dh-sequence-installsysusers"}

problems = []


def require(condition, message):
    if not condition:
        problems.append(message)


def compare(what, found, wanted):
    require(found == wanted, f"{what}: missing {sorted(wanted - found)}, too many {sorted(found - wanted)}")


def run(*command, home=None, **options):
    environment = dict(os.environ, LC_ALL="C.UTF-8", LANGUAGE="en")
    if home:
        environment.update(HOME=home, TMPDIR=home)
    for name in ("DISPLAY", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
        environment.pop(name, None)
    result = subprocess.run([str(part) for part in command], capture_output=True, text=True, stdin=subprocess.DEVNULL,
                            timeout=60, check=False, env=environment, **options)
    require(result.returncode == 0, f"{command[0]} ended with {result.returncode}: {result.stderr}")
    return result.stdout


def lines_to_complete(program):
    """Command lines whose completions are all options of a program together."""
    if program != "orbivue-modeldb":
        return [f"{program} --"]
    commands = MODELDB_COMMANDS.split() + ["token create x", "token list"]
    return [f"{program} --"] + [f"{program} {command} --" for command in commands]


def printed_by(program, option):
    """What a program says of itself, which leaves nothing behind."""
    with tempfile.TemporaryDirectory() as home:
        text = run(program, option, home=home)
        require(not os.listdir(home), f"{program} {option} leaves {os.listdir(home)} in the home folder")
    return text


def options_in(text):
    return set(re.findall(r"(?<![\w-])--([a-z][a-z-]+)", text))


# Each gives what is offered for each line, or, without the shell, all that its file says.
def offered_by_bash(folder, program):
    script = """source /usr/share/bash-completion/bash_completion; source "$1"; shift; compopt() { :; }
        for COMP_LINE; do
            COMP_POINT=${#COMP_LINE} COMPREPLY=(); read -ra COMP_WORDS <<<"$COMP_LINE"; COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
            function=$(complete -p "${COMP_WORDS[0]}"); function=${function#*-F }
            ${function%% *} "${COMP_WORDS[0]}" -- "${COMP_WORDS[COMP_CWORD - 1]}"; echo "${COMPREPLY[@]}"
        done"""
    return run("bash", "-c", script, "bash", folder / "bash" / program, *lines_to_complete(program)).splitlines()


def offered_by_zsh(folder, program):
    if not shutil.which("zsh"):
        return [(folder / f"zsh/_{program}").read_text()]
    return [line.split(": ", 1)[-1] for line in run(
        Path(__file__).parent / "complete.zsh", folder / "zsh", *lines_to_complete(program)).splitlines()]


def offered_by_fish(folder, program):
    file = folder / f"fish/{program}.fish"
    if not shutil.which("fish"):
        return [re.sub(r" -l ([a-z-]+) -", r" --\1 -", file.read_text())]
    script = "source $argv[1]; for line in $argv[2..]; complete -C $line | cut -f 1 | string join ' '; end"
    return run("fish", "--no-config", "-c", script, "--", file, *lines_to_complete(program)).splitlines()


def check_completions(source, build):
    for program in PROGRAMS:
        require(re.search(r" \d+\.\d+", printed_by(build / "bin" / program, "--version")), f"{program} --version tells none")
        summary = options_in(printed_by(build / "bin" / program, "--help")) | HIDDEN.get(program, set())
        require(len(summary) > 2, f"{program} --help tells no options")
        by_bash = offered_by_bash(source / "packaging/completions", program)
        compare(f"bash for {program}", options_in(" ".join(by_bash)), summary)
        for offered_by in (offered_by_zsh, offered_by_fish):
            texts = offered_by(source / "packaging/completions", program)
            compare(f"{offered_by.__name__} for {program}", options_in(" ".join(texts)), summary)
            for line, text, in_bash in zip(lines_to_complete(program), texts if len(texts) > 1 else [], by_bash):
                compare(f"{offered_by.__name__}, beside bash, for {line}", options_in(text), options_in(in_bash))
        page = (source / f"docs/{program}.1").read_text().replace("\\-", "-")
        compare(f"the page of {program}", options_in(page) - TOOLKIT.get(program, set()), summary)


def field(control, name):
    """The packages of a field, without versions, those of alternatives each."""
    text = re.search(rf"^{name}:((?:.*\n)(?:[ \t].*\n)*)", control, re.M).group(1)
    return {re.sub(r"\(.*?\)", "", word).strip() for word in re.split(r"[,|]", text) if word.strip()}


def check_control(source, _build):
    control = (source / "packaging/debian/control").read_text()
    listed = {group: set(run(source / "scripts/setup", "--list", group).split()) for group in ("--build", "--extra", "--runtime")}
    compare("Build-Depends beside scripts/setup --build", field(control, "Build-Depends") - ONLY_IN_CONTROL,
            listed["--build"] - ONLY_IN_SETUP)
    offered = field(control, "Recommends") | field(control, "Suggests")
    require(listed["--extra"] <= offered, f"not recommended or suggested: {sorted(listed['--extra'] - offered)}")
    version = re.search(r"project\(orbivue VERSION ([\d.]+)", (source / "CMakeLists.txt").read_text()).group(1)
    changes = (source / "packaging/debian/changelog").read_text()
    require(changes.startswith(f"orbivue ({version}-"), "debian/changelog does not begin with this version")


def check_languages(source, _build):
    """Every text of the desktop file, the MIME types and the summary is there in each language that has a catalogue."""
    catalogues = {path.stem for path in (source / "data/languages").glob("*.po")}
    desktop = (source / "packaging/orbivue.desktop").read_text()
    language_of = "{http://www.w3.org/XML/1998/namespace}lang"
    texts = {key: re.findall(rf"^{key}\[(\w+)\]=.", desktop, re.M) for key in ("GenericName", "Comment", "Keywords", "Name")}
    for file, name in (("orbivue-mime.xml", "comment"), ("orbivue.metainfo.xml.in", "summary")):
        for parent in ElementTree.parse(source / "packaging" / file).iter():
            translated = [child.get(language_of) for child in parent if child.tag.endswith(name) and child.get(language_of)]
            if translated:
                texts[f"{file} {parent.get('type')}"] = translated
    require(len(texts) == 7, f"texts are missing: {sorted(texts)}")
    for key, languages in texts.items():
        require(len(languages) == len(set(languages)), f"{key} has a language twice")
        require(catalogues <= set(languages), f"{key} lacks {sorted(catalogues - set(languages))}")


def main():
    checks = {"completions": check_completions, "control": check_control, "languages": check_languages}
    with tempfile.TemporaryDirectory() as home:
        os.environ["HOME"] = home
        checks[sys.argv[1]](Path(sys.argv[2]), Path(sys.argv[3]))
    sys.exit("\n".join(problems) or 0)


if __name__ == "__main__":
    main()
