"""Shows the Plotly figures of code cells by the plotly.min.js that comes with the site."""

from hashlib import sha256

import plotly.io
from plotly.io.base_renderers import MimetypeRenderer

CONFIG = {"displaylogo": False, "responsive": True}
HEIGHT = 450  # pixels, of a figure that names none


class PageRenderer(MimetypeRenderer):
    def to_mimebundle(self, fig_dict):
        height = fig_dict.get("layout", {}).get("height", HEIGHT)
        figure = plotly.io.to_json({**fig_dict, "config": CONFIG}, validate=False)
        name = "figure-" + sha256(figure.encode()).hexdigest()[:16]
        figure = figure.replace("</", "<\\/")
        return {
            "text/html": (
                f'<div id="{name}" class="plotly-graph-div" style="height: {height}px"></div>'
                "<script>addEventListener('DOMContentLoaded',"
                f" () => Plotly.newPlot('{name}', {figure}))</script>"
            )
        }


plotly.io.renderers["page"] = PageRenderer()
plotly.io.renderers.default = "page"
