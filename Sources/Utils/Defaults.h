#pragma once

/// What the show is like where its settings say nothing else.
namespace defaults {

constexpr int SEED = 42;
constexpr int WIDTH = 640; ///< pixels
constexpr int HEIGHT = 480;

} // namespace defaults
