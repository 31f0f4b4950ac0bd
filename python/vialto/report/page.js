// The pictures over distance share their axis: who zooms one zooms all.
(() => {
  const pictures = [...document.querySelectorAll(".by-distance .plotly-graph-div")];
  const whole = new Map(pictures.map((picture) => [picture, picture.layout.xaxis.range.slice()]));
  let following = false;

  const rangeIn = (event) => {
    for (const key of Object.keys(event)) {
      const [, axis, rest] = key.match(/^(xaxis\d*)\.(range\[0\]|range|autorange)$/) || [];
      if (rest === "range[0]") return [event[key], event[`${axis}.range[1]`]];
      if (rest === "range") return event[key];
      if (rest === "autorange") return "whole";
    }
    return null;
  };

  for (const picture of pictures) {
    picture.on("plotly_relayout", (event) => {
      const range = rangeIn(event);
      if (following || range === null) return;
      following = true;
      const others = range === "whole" ? pictures : pictures.filter((other) => other !== picture);
      Promise.all(
        others.map((other) =>
          Plotly.relayout(other, { "xaxis.range": range === "whole" ? whole.get(other) : range }),
        ),
      ).finally(() => {
        following = false;
      });
    });
  }
})();
