"""Looks at each page of a site as a reader does who has a phone and no network.

    check_site.py FOLDER

A page loads nothing from outside the folder, raises no error, draws its figures and formulas, and
fits the screen. Every link within the site leads somewhere. The references hold every function of
the library and every public name of the package.
"""

import importlib
import re
import shutil
import sys
from pathlib import Path
from types import ModuleType
from urllib.parse import unquote, urljoin

from playwright.sync_api import sync_playwright

PHONE = {"width": 390, "height": 844}
HEADER = Path(__file__).parents[1] / "include/vialto/vialto.h"
MODULES = ("vialto", "vialto.report", "vialto.network", "vialto.defaults")

DRAWN = "() => !window.MathJax || MathJax.startup.promise.then(() => true)"
FAULTS = """() => {
  const faults = [];
  const none = (selector, fault, what) => {
    const count = [...document.querySelectorAll(selector)].filter(fault).length;
    if (count > 0) faults.push(`${count} ${what}`);
  };
  none(".plotly-graph-div", (it) => !it.querySelector(".main-svg"), "figures are not drawn");
  none(".math", (it) => !it.querySelector("mjx-container"), "formulas are not drawn");
  none("mjx-merror, [data-mjx-error]", () => true, "formulas are wrong");
  none("img", (it) => it.naturalWidth === 0, "pictures are missing");
  if (document.documentElement.scrollWidth > innerWidth) faults.push("wider than a phone");
  return faults;
}"""
IDS = "() => [...document.querySelectorAll('[id]')].map((it) => it.id)"
LINKS = "() => [...document.links].map((it) => it.getAttribute('href'))"


def look_at(page, browser):
    """The faults of a page, its anchors, and where its links lead."""
    faults = []
    tab = browser.new_page(viewport=PHONE)
    tab.on("pageerror", lambda error: faults.append(str(error)))
    tab.on("request", lambda asked: is_inside(asked.url) or faults.append(f"loads {asked.url}"))
    address = page.as_uri()
    tab.goto(address)
    tab.wait_for_function(DRAWN)
    faults += tab.evaluate(FAULTS)
    anchors = {address, *(f"{address}#{name}" for name in tab.evaluate(IDS))}
    links = {unquote(urljoin(address, link)).removesuffix("#") for link in tab.evaluate(LINKS)}
    tab.close()
    return faults, anchors, {link for link in links if is_inside(link)}


def is_inside(address):
    return address.startswith(("file:", "data:", "blob:"))


def is_file(address):
    return "#" not in address and Path(address.removeprefix("file://")).is_file()


def described():
    """The anchors that the references owe."""
    for function in re.findall(r"VIALTO_CALL (\w+)\(", HEADER.read_text()):
        yield f"reference-c.html#c.{function}"
    for name in MODULES:
        module = importlib.import_module(name)
        names = getattr(module, "__all__", None) or [one for one in vars(module) if one.isupper()]
        public = [one for one in names if not isinstance(getattr(module, one), ModuleType)]
        yield from (f"reference-python.html#{name}.{one}" for one in public)


def main():
    folder = Path(sys.argv[1]).resolve()
    pages = sorted(page for page in folder.glob("*.html"))
    faults, anchors, links = [], set(), {}
    with sync_playwright() as playwright:
        browser = playwright.chromium.launch(
            executable_path=shutil.which("chromium"), args=["--no-sandbox"]
        )
        for page in pages:
            found, own, leads = look_at(page, browser)
            faults += [f"{page.name}: {fault}" for fault in found]
            anchors |= own
            links[page.name] = leads
        browser.close()
    for page, leads in links.items():
        broken = [link for link in sorted(leads - anchors) if not is_file(link)]
        faults += [f"{page}: a broken link to {link}" for link in broken]
    faults += [
        f"{name} is missing" for name in described() if f"{folder.as_uri()}/{name}" not in anchors
    ]
    print("\n".join([*faults, f"{len(pages)} pages, {len(faults)} faults"]))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
