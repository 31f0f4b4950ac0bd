"""The site of the guide and of both references. script/docs stages the pages and calls Sphinx."""

import os
import re
import sys
from importlib.resources import files
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent / "_extensions"))
tree = Path(os.environ["VIALTO_TREE"])

project = "Vialto"
html_title = "Vialto"
header = (tree / "include/vialto/vialto.h").read_text()
version = ".".join(re.findall(r"VIALTO_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", header))

extensions = [
    "breathe",
    "executed",
    "myst_nb",
    "numpydoc",
    "sphinx.ext.autodoc",
    "sphinx.ext.mathjax",
]
if pages := os.environ.get("VIALTO_PAGES", "").split():
    include_patterns = ["index.md", *(f"{page}.md" for page in pages)]
    suppress_warnings = ["toc.not_readable", "toc.excluded", "myst.xref_missing"]

# Pages: each code cell is executed, and a link that leads nowhere is a warning.
myst_enable_extensions = ["colon_fence", "dollarmath"]
myst_heading_anchors = 3
nb_execution_mode = "inline"
nb_execution_show_tb = True
nb_execution_timeout = 300
nb_output_stderr = "warn"
nb_merge_streams = True
nb_eval_name_regex = ".+"
nb_ipywidgets_js = {}

# The C interface, from the contracts of the header.
breathe_projects = {"vialto": os.environ["VIALTO_REFERENCE"] + "/xml"}
breathe_default_project = "vialto"
breathe_domain_by_extension = {"h": "c"}
breathe_show_enumvalue_initializer = True
breathe_show_include = False
nitpick_ignore = [("c:identifier", "int32_t")]

# The Python package, from its docstrings.
default_role = "py:obj"
autodoc_default_options = {"members": True}
autodoc_member_order = "bysource"
autodoc_preserve_defaults = True
autodoc_typehints = "none"
numpydoc_show_class_members = False

# What a reader's browser needs comes with the site.
html_theme = "furo"
html_static_path = [
    "_static",
    str(files("plotly") / "package_data/plotly.min.js"),
    str(files("sphinx-mathjax-offline") / "static/mathjax/tex-svg.js"),
]
html_css_files = ["guide.css"]
mathjax_path = "tex-svg.js"
html_copy_source = False
highlight_language = "none"
maximum_signature_line_length = 90
html_show_copyright = False
