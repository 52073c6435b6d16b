// SPDX-License-Identifier: GPL-3.0-or-later
// The problems of a profile beside those of a run, which foresight::problems names.
#pragma once

#include "foresight/finding.h"

namespace varnholt::check {

using foresight::Finding;
using foresight::Problem;
using foresight::Weight;

namespace problems {

// What the window makes of a line.
constexpr Problem fields{
    "fields",
    N_("The window cannot read this line, which has %1 fields: it is gone after the next save.")};
constexpr Problem nul_byte{
    "nul-byte",
    N_("The window cannot read this line, which holds a NUL byte: it is gone after the next "
       "save.")};
constexpr Problem unknown_kind{
    "unknown-kind", N_("The window knows no such line: it is gone after the next save.")};
constexpr Problem own_source{
    "own-source",
    N_("The window takes no line whose source is its target: it is gone after the next save.")};
constexpr Problem route_name_taken{
    "route-name-taken",
    N_("Line %1 has a route of the same name: this one is gone after the next save.")};
constexpr Problem route_taken{
    "route-taken",
    N_("Line %1 has the same address, mask and gateway: this route is gone after the next "
       "save.")};
constexpr Problem answer_repeated{
    "answer-repeated",
    N_("Line %1 answers this too, and counts: this one is gone after the next save.")};
constexpr Problem other_operation{
    "other-operation",
    N_("The window reads the operation as \"%1\", and its next save writes that.")};
constexpr Problem other_answer{
    "other-answer", N_("The window reads the answer as \"%1\", and its next save writes that.")};
constexpr Problem other_value{
    "other-value", N_("The window reads a value as \"%1\", and its next save writes that.")};
constexpr Problem no_utf8{"no-utf8",
                          N_("This line is no UTF-8: it stays only as long as nobody edits it."),
                          Weight::notice};

// About the default route.
constexpr Problem default_route{
    "default-route", N_("The profile asks for the default route to be deleted."), Weight::notice};
constexpr Problem default_route_open{
    "default-route-open",
    N_("No line answers whether the default route is to be deleted: the next save of the window "
       "answers yes."),
    Weight::notice};

// When another profile takes the place of the present one.
constexpr Problem is_new{"new", N_("The present profile has no such definition."), Weight::notice};
constexpr Problem is_gone{"gone", N_("The present profile has a definition that is gone: %1"),
                          Weight::notice};
constexpr Problem link_abandoned{
    "link-abandoned",
    N_("The present profile has the link %1, which is gone without being marked deleted: the link "
       "stays, and nothing looks after it any more.")};
constexpr Problem version_lower{"version-lower",
                                N_("The version is lower than that of the present profile, %1.")};
constexpr Problem version_same{
    "version-same",
    N_("The version is that of the present profile, %1, which says something else."),
    Weight::notice};
constexpr Problem default_route_changes{
    "default-route-changes",
    N_("The present profile keeps the default route, and this one does not.")};

// In the file of the profile, and in the files beside it.
constexpr Problem owner{"owner", N_("The profile belongs to the user %1 and not to root.")};
constexpr Problem writable{"writable", N_("Others than root may write the profile.")};
constexpr Problem unsaved{
    "unsaved",
    N_("A save was not put into place: %1 is newer than the profile and says something else.")};
constexpr Problem no_script{
    "no-script", N_("There is no backup script %1, so closing the window runs no link builder."),
    Weight::notice};
constexpr Problem profile_fixed{
    "profile-fixed",
    N_("Nothing can replace the profile %1: definitions that are marked deleted stay in it.")};
constexpr Problem leftover{
    "leftover",
    N_("%1 is there, where a run writes the new profile; the next run removes it only if "
       "nothing of it would be missed.")};
constexpr Problem command_missing{"command-missing", N_("The command %1 is missing.")};

}  // namespace problems

}  // namespace varnholt::check
