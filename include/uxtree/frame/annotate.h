// Marks beside the declarations of entry points: what a parameter may be, and what a result says.
//
// They expand to nothing. tools/dev/public_headers.py reads them, and what depends on such facts is
// made from them: the reference, the header for C, the list of entry points, the rules by which the
// sweep of bad arguments is checked, the table of result codes. Every pointer and every reference
// that is not to a constant bears a direction.
#pragma once

// --- directions of a parameter

// Read and left alone; a handle lets the tree below it be read.
#define UX_IN
// A handle whose tree is changed.
#define UX_EDITS
// Receives a result, and is as it was when the call fails. An array is emptied first.
#define UX_OUT
// A handle that receives a result, and that a failing call may release.
#define UX_OUT_RELEASED
// Read, and then written.
#define UX_INOUT
// An array that results are added to.
#define UX_APPENDS
// Read or written, as another argument says.
#define UX_GETSET

// --- what a script array holds

#define UX_INTS
#define UX_DOUBLES
#define UX_BOOLS
#define UX_STRINGS
// An array of any of these.
#define UX_ANY

// --- what else a parameter may be

// May be null; an empty text means the same as null.
#define UX_OPT
// A text that may be null, which does not mean the same as "".
#define UX_NULL_COUNTS
// A handle that may be invalid.
#define UX_MAY_BE_INVALID
// A text that is the UTF-8 name of a file.
#define UX_FILE
// Behind the name of a number: the bits that it may have, as name = value.
#define UX_BITS(...)

// --- behind a declaration

// The kind of the result, and then the codes that say why there is none, as name = number; "other"
// in place of the number stands for any further code. A function without it has no result.
//
//   done          1 when it was done
//   yes           1 or true for yes, 0 or false for no
//   count         a number from 0 on: so many, or a position
//   zero          0 when it was done
//   stored        a value as it is stored
//   number        one of the codes
//   says_nothing  the same whether it was done or not
//   text          a text
//   handle        something that the caller must free, or null
//   borrowed      something that stays with the library, or null
//
// The names of codes:
//
//   bad_path             The path is empty or does not begin with "/".
//   broken_repeat_rule   A node breaks the rules of repeated identifiers.
//   duplicate_id         An identifier stands twice where it may stand once.
//   empty_array          An array is empty.
//   equal                There is no difference.
//   host_refused         The host refused a change.
//   lengths_differ       The arrays differ in length, or one is missing.
//   missing_id           A node of a kind that needs an identifier has none.
//   mixed_text           The answer depends on text whose place among child elements is not known.
//   no                   The answer is no, or an argument is unusable.
//   no_array             There is no array for the names, or the object is no string array.
//   no_identifier        There is no identifier to look for, or a link of the chain is missing.
//   no_memory            There is not enough memory.
//   no_numbers           The text holds no numbers, or one of its tokens is none.
//   no_problem           There is nothing wrong.
//   node_out_of_range    The RepeatNodeID of the node is out of range.
//   node_overlaps        The RepeatNodeID of the node shares bits with its identifier.
//   none                 There is none, or an argument is unusable.
//   not_a_spectrum_file  The file cannot be read, is no XML, or holds no spectra.
//   not_added            A node could not be added, or the tree is unusable.
//   not_combined         There is nothing to combine, or an argument is unusable.
//   not_copied           A node could not be copied; what was copied before it stays.
//   not_done             It could not be done, or an argument is unusable.
//   not_found            What was looked for is not there, or an argument is unusable.
//   not_read             The file cannot be read, or its name is missing.
//   not_set              An attribute could not be set.
//   not_well_formed      The file is no well-formed XML.
//   nothing_given        The target, or both the source and the file name, are missing.
//   own                  The node's own repeat identifier was taken.
//   ran_out              The destination has fewer nodes; what was copied before stays.
//   repeat_combined      The node's repeat identifier was combined with the inherited one.
//   repeat_out_of_range  The repeat identifier of the node is out of range.
//   repeat_overlaps      The repeat identifier of the node shares bits with the inherited one.
//   source_invalid       The handle of the source is invalid.
//   stamped              The inherited repeat identifier was stamped into the identifier.
//   target_invalid       The handle of the target is invalid.
//   too_large            The identifier is too large to be combined.
//   unusable             An argument is missing, invalid or of another type.
//   wrong_array          An object is no array of the needed type, or is missing.
//   wrong_root           The tree is invalid, or its tag is not the first step.
#define UX_RETURNS(...)
// Takes long and touches files; a caller may let others work meanwhile.
#define UX_BLOCKS
// Has no form for scripts and C, and why.
#define UX_NATIVE_ONLY(reason)
