// Recursive sections one behind the other, all in one sweep over an array.
#pragma once

namespace vialto {

// Runs the passes over the samples from `first` to `last` in place: each sample goes through all
// passes before the next one is read. The results are those of one sweep after the other, but while
// the recursion of one pass waits for its own last value, those of the others go on.
//
// A pass answers the first sample by open(x), the second by second(x) and every later one by
// next(x). Backward passes take reverse iterators.
template <class Iterator, class... Passes>
void run_cascade(Iterator first, Iterator last, Passes... passes) {
    if (first == last) {
        return;
    }
    auto value = *first;
    ((value = passes.open(value)), ...);
    *first = value;
    if (++first == last) {
        return;
    }
    value = *first;
    ((value = passes.second(value)), ...);
    *first = value;
    while (++first != last) {
        value = *first;
        ((value = passes.next(value)), ...);
        *first = value;
    }
}

} // namespace vialto
