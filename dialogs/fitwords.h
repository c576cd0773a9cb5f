#pragma once

#include "fit/fit.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// What a fit is called in front of people, and what becomes of it.

/// "1 piece, 97 % sure." and what else there is to know of it.
std::string FitVerdictText(const Fit& fit);
/// "1 - 412"
std::string PieceTitlesText(const FitPiece& piece);
/// How much later the piece's first title comes, at the place where it stands: "2.41 s
/// earlier", "not moved".
std::string PieceMoveText(const FitPiece& piece, std::span<const FitTitle> titles);
/// "25 for 23.976 pictures a second", or the plain factor where it is no quotient of two usual
/// rates; "as it was".
std::string PieceRateText(const FitPiece& piece);
/// "98 %"
std::string PercentText(double part);

/// A line for the window once titles and speech are known: "The titles fit the sound",
/// "About 2.4 s late. Fit...", "Made for 25 pictures a second, the film has 23.976.
/// Fit...", "These titles seem to belong to another film". Empty when the fit is not sure.
/// `filmRate`: of the film's pictures; 0 when unknown.
std::string FitHintText(const Fit& fit, std::span<const FitTitle> titles, double filmRate);

/// The title of the piece (counted from 0) whose place is least sure; 0 when it has none.
std::int32_t LeastSureTitle(const Fit& fit, std::int32_t piece);
/// The numbers of the titles that get other times.
std::vector<std::int32_t> MovedTitles(std::span<const FitTitle> titles,
                                      std::span<const FitTimes> times);
