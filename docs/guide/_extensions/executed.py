"""What a page shows, it runs: directives for programs and commands, beside the code cells.

``{program} NAME.c``, ``NAME.cpp`` or ``NAME.cs`` shows a program of the folder ``programs``,
compiles it, warnings being errors, runs it in the folder of the pages, and shows what it prints.

``{run}`` shows commands, runs them in a copy of that folder, one for each page, and shows what they
print.

Whatever fails, fails the build; and so does a block of code that nothing runs, unless it is an
excerpt of a file of the tree, by ``{literalinclude}``.
"""

import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from docutils import nodes
from sphinx import addnodes
from sphinx.util import logging
from sphinx.util.docutils import SphinxDirective

TREE = Path(os.environ["VIALTO_TREE"])
BINDING = TREE / "bindings/dotnet/Vialto.cs"
WARNINGS = ["-Wall", "-Wextra", "-Werror"]
LANGUAGES = {".c": "c", ".cpp": "cpp", ".cs": "csharp"}
NOT_RUN = {"install", "reference-c"}  # the one says so, the other has contracts

logger = logging.getLogger(__name__)


class ShownError(Exception):
    """A program or a command that cannot be shown or run."""


def run(*command, cwd=None):
    """What a command prints."""
    with tempfile.TemporaryDirectory() as diagnostic_files:
        done = subprocess.run(
            [str(word) for word in command],
            cwd=cwd,
            env=os.environ | {"TMP": diagnostic_files},
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            timeout=300,
        )
    if done.returncode != 0:
        raise ShownError(f"{command[0]} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def printed_by(source):
    """What a program prints, which is compiled for that."""
    with tempfile.TemporaryDirectory() as directory:
        program = Path(directory) / source.stem
        if source.suffix == ".cs":
            options = ["-langversion:7.2", "-warnaserror", "-r:System.Core.dll"]
            run("mcs", *options, f"-out:{program}", source, BINDING)
            return run("mono", program, cwd=source.parents[1])
        libraries = [f"-L{os.environ['LD_LIBRARY_PATH']}", "-lvialto", "-lm", "-pthread"]
        compiler = ["c++", "-std=c++17"] if source.suffix == ".cpp" else ["cc"]
        run(*compiler, *WARNINGS, f"-I{TREE}/include", source, "-o", program, *libraries)
        return run(program, cwd=source.parents[1])


def shown(code, language, printed):
    """A block of code and what it prints, as a code cell looks."""
    cell = nodes.container(classes=["cell"])
    given = nodes.container("", nodes.literal_block(code, code, language=language))
    given["classes"] = ["cell_input"]
    cell += given
    if printed:
        block = nodes.literal_block(printed, printed, language="none", classes=["output", "stream"])
        cell += nodes.container("", block, classes=["cell_output"])
    return [cell]


class Program(SphinxDirective):
    required_arguments = 1

    def run(self):
        source = Path(self.env.srcdir, "programs", self.arguments[0])
        try:
            code, printed = source.read_text(), printed_by(source)
        except (ShownError, OSError) as failure:
            raise self.error(str(failure)) from failure
        return shown(code, LANGUAGES[source.suffix], printed)


class Run(SphinxDirective):
    has_content = True

    def run(self):
        folder = Path(os.environ["VIALTO_SCRATCH"], self.env.docname)
        if not folder.exists():
            shutil.copytree(self.env.srcdir, folder)
        commands = "\n".join(self.content)
        try:
            printed = run("bash", "-euo", "pipefail", "-c", commands, cwd=folder)
        except ShownError as failure:
            raise self.error(str(failure)) from failure
        return shown(commands, "bash", printed)


def report_code_that_is_not_run(app, doctree):
    """Warns of each block outside cells, excerpts of files, and descriptions of a reference."""
    if app.env.docname in NOT_RUN:
        return
    for block in doctree.findall(nodes.literal_block):
        outer, executed = block, "source" in block
        while (outer := outer.parent) is not None and not executed:
            executed = isinstance(outer, addnodes.desc) or "cell" in outer.get("classes", [])
        if not executed:
            logger.warning("a block of code that is not run", location=block)


def load_plotly_where_figures_are(app, _pagename, _templatename, context, _doctree):
    if "plotly-graph-div" in context.get("body", ""):
        app.add_js_file("plotly.min.js")


def setup(app):
    app.add_directive_to_domain("std", "program", Program, override=True)  # names options there
    app.add_directive("run", Run)
    app.connect("doctree-read", report_code_that_is_not_run)
    app.connect("html-page-context", load_plotly_where_figures_are)
    return {"parallel_read_safe": True, "parallel_write_safe": True}
