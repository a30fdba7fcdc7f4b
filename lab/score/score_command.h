// mdlab score: one run against the labels of its clip.
#pragma once

namespace CLI {
class App;
}

namespace lab {

void AddScore(CLI::App* app, int* status);

}  // namespace lab
