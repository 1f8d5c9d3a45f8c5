// The one kind of failure the MusicXML side reports: a message a musician can act on
// ("measure 12 of part P1: a note without a duration"). Host tools catch it at main.
#pragma once

#include <stdexcept>
#include <string>

namespace scribo::musicxml {

class ScoreError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace scribo::musicxml
