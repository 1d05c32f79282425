"""What the checks share: the tree, its tracked files, faults with their place, and small trees for the self-tests."""

import argparse
import pathlib
import plistlib
import subprocess
import sys
import tempfile
import xml.parsers.expat

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]


class Unreadable(Exception):
    """A file that a check needs is missing or broken; the text is the fault to print."""


class Tree:
    """A source tree, looked at through the files that it keeps."""

    def __init__(self, root):
        self.root = pathlib.Path(root)

    def files(self, *suffixes):
        """The files with one of the suffixes, relative to the root: those of git, or all where git knows nothing."""
        listed = subprocess.run(
            ["git", "-C", str(self.root), "ls-files", "--cached", "--others", "--exclude-standard"],
            capture_output=True, text=True, check=False)
        if listed.returncode == 0:
            names = listed.stdout.splitlines()
        else:
            names = [str(path.relative_to(self.root)) for path in self.root.rglob("*") if path.is_file()]
        return sorted(name for name in set(names) if name.endswith(suffixes) and (self.root / name).is_file())

    def exists(self, name):
        return (self.root / name).exists()

    def data(self, name):
        try:
            return (self.root / name).read_bytes()
        except OSError as error:
            raise Unreadable(fault(name, 1, error.strerror)) from error

    def text(self, name):
        return self.data(name).decode("utf-8", errors="replace")

    def property_list(self, name):
        try:
            return plistlib.loads(self.data(name))
        except xml.parsers.expat.ExpatError as error:
            raise Unreadable(fault(name, error.lineno, str(error))) from error
        except (ValueError, plistlib.InvalidFileException) as error:
            raise Unreadable(fault(name, 1, f"no property list: {error}")) from error


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def line_with(text, needle):
    """The first line that holds the needle; 1 where none does, so that a fault always has a place."""
    position = text.find(needle)
    return line_of(text, position) if position >= 0 else 1


def fault(name, line, reason):
    return f"{name}:{line}: {reason}"


def outcome(check, tree):
    try:
        return check(tree)
    except Unreadable as unreadable:
        return [str(unreadable)]


def expect(title, files, check, wanted):
    """Runs the check over a tree of the given files; answers what differs from the faults wanted.

    Each wanted text has to appear in a fault of its own, and no fault may be left over.
    """
    with tempfile.TemporaryDirectory() as folder:
        for name, content in files.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content if isinstance(content, bytes) else content.encode("utf-8"))
        found = outcome(check, Tree(folder))
    problems = []
    for text in wanted:
        match = next((entry for entry in found if text in entry), None)
        if match is None:
            problems.append(f"self-test '{title}': no fault with '{text}'")
        else:
            found.remove(match)
    return problems + [f"self-test '{title}': unexpected fault '{entry}'" for entry in found]


def run(check, self_test):
    """The command line of a check: prints the faults and exits with 1 where there are any."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--self-test", action="store_true", help="try the check on bad input instead of the tree")
    parser.add_argument("--root", default=REPOSITORY, help="the tree to look at")
    arguments = parser.parse_args()
    faults = self_test() if arguments.self_test else outcome(check, Tree(arguments.root))
    for entry in faults:
        print(entry)
    sys.exit(1 if faults else 0)
