#ifndef HOSTILE_SHAPES_H
#define HOSTILE_SHAPES_H

#include <string>
#include <vector>

// Shapes of hostile texts, see `repeated`.

struct Shape {
  std::string name;
  std::vector<std::string> pieces;  ///< the first once, the others repeated
};

/// Each line, and each piece of one, behind each beginning; and pairs of those that searches go over for one another.
std::vector<Shape> hostileShapes();

#endif
