#pragma once

#include "model_tree.h"

namespace tessary::model {

// The inner object's Add: appends the element; one of unknown status gets its neighbours' names
// and its number in a run of elements of the same name. Failure 13 or 6 when the element before it
// has the same name and a number that is none.
void Add(Level& level, Row element);

// The steps of a comparison. All of them change the two arrays and add to `level`.
bool CheckForAddingAllElements(Level& level, const Array& old_rows, const Array& new_rows);
void CheckMissingElements(Level& level, const Array& source, const Array& dest, int status);
void CheckMissingSpecialElements(Level& level, const Array& source, const Array& dest, int status,
                                 int start_row);
// `child_number` is the class of the receiving level objects, -1 for none. Elements that are not in
// the old array are passed over; their number is returned.
int CompareElements(Level& level, const Array& old_rows, const Array& new_rows, int child_number);

// The whole comparison of two arrays in the way of the level's class.
void Compare(Level& level, const Array& old_rows, const Array& new_rows);

// The difference tree of two files; consumes both.
Array CompareReports(const Array& old_report, const Array& new_report);

}  // namespace tessary::model
