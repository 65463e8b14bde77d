#!/usr/bin/env python3
"""Expectations of the model that can be checked with a pencil."""

from __future__ import annotations

import math
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import korv_model as model
from korv_model import (APPED, APPRO, EXACT, ROW, Bounded, ClassData, ClassReader, Entry,
                        InterNodeRules, IntraNodeRules, LatticeBuilder, Result, RuleWriter,
                        Thresholds)

MODEL_PROGRAM = Path(model.__file__)

BANNER = (b"\n"
          b"  ****************************************************************\n"
          b"  ***                                                          ***\n"
          b"  ***                  The KORV tool                           ***\n"
          b"  ***      Korvane\t\t        ***\n"
          b"  ***                                                          ***\n"
          b"  ****************************************************************\n"
          b"\n")

SEPARATOR = b"---------------------------\n"

# Six transactions: item 1 is in three of them, item 2 in four, one of the two in five.
TWO_ITEMS = (b"1\t3\t 1,\n"
             b"2\t4\t 2,\n"
             b"1 2\t5\t 1, 2,\n")


def run(class_file: bytes | None, minsupp: str = "1", minconf: str = "0.5",
        n: str = "6") -> Result:
    """A run with the label t."""
    return model.run(class_file, ["t", "classes", minsupp, minconf, n])


def read_one(data: bytes) -> model.Record:
    """The first record of a class file."""
    return ClassReader(data).read_record()


def linked(*itemsets: tuple[int, ...]) -> dict[tuple[int, ...], list[tuple[int, ...]]]:
    """The successors of each of these closed itemsets."""
    entries = model.load_entries({itemset: ClassData() for itemset in sorted(itemsets)})
    LatticeBuilder(entries).build()
    return {entry.itemset: entry.successors for entry in entries}


def lattice(*classes: tuple[tuple[int, ...], int, list[tuple[int, ...]]]) -> list[Entry]:
    """Entries of (itemset, support, essential itemsets), in the order given."""
    return [Entry(len(itemset), itemset, ClassData(support, essentials))
            for itemset, support, essentials in classes]


def without_header(lines: list[str]) -> bytes:
    """What a rule file holds after its three header lines."""
    return "".join(lines[3:]).encode()


def without_header_bytes(rule_file: bytes) -> bytes:
    """The same of a whole rule file."""
    return rule_file.split(b"\n", 3)[3]


class Rules(unittest.TestCase):
    """Rule makers with their own writer."""

    def setUp(self) -> None:
        self.out = RuleWriter()

    def intra(self, minsupp: int, minconf: float, n: int) -> IntraNodeRules:
        """An intra-node rule maker without classes."""
        return IntraNodeRules([], Thresholds(minsupp, minconf, n), self.out)

    def inter(self, minsupp: int, minconf: float, n: int) -> InterNodeRules:
        """An inter-node rule maker without classes."""
        return InterNodeRules([], {}, Thresholds(minsupp, minconf, n), self.out)

    def assert_counts(self, expected: dict[tuple[str, int], int]) -> None:
        """Exactly these counter cells are not zero."""
        cells = {(form, kind): self.out.counters[row][kind]
                 for form, row in ROW.items() for kind in (EXACT, APPRO, APPED)}
        self.assertEqual({cell: count for cell, count in cells.items() if count}, expected)


class NumberTest(unittest.TestCase):
    """Conversions and double arithmetic."""

    def test_whole_numbers_saturate_at_32_bits_and_are_stored_unsigned(self) -> None:
        expected = {b"300": 300, b"": 0, b"abc": 0, b"12x": 12, b" \t+7": 7, b"-1": 4294967295,
                    b"4294967295": 2147483647, b"2147483648": 2147483647, b"- 1": 0,
                    b"-2147483649": 2147483648, b"0x10": 0, b"010": 10}
        self.assertEqual({text: model.strtol(text) for text in expected}, expected)

    def test_fractions_follow_the_c_grammar(self) -> None:
        expected = {b"0.50": 0.5, b"1e-3": 0.001, b"0x1p-1": 0.5, b"": 0.0, b"abc": 0.0,
                    b".5x": 0.5, b"inf": math.inf, b"1e400": math.inf, b" -2": -2.0}
        self.assertEqual({text: model.strtod(text) for text in expected}, expected)

    def test_doubles_print_with_six_digits(self) -> None:
        self.assertEqual(model.format_double(0.8), "0.8")
        self.assertEqual(model.format_double(1.0), "1")
        self.assertEqual(model.format_double(2 / 3), "0.666667")
        self.assertEqual(model.format_double(0.00001), "1e-05")
        self.assertEqual(model.format_double(1234567.0), "1.23457e+06")
        self.assertEqual(model.format_double(math.inf), "inf")

    def test_a_typed_nan_keeps_its_sign_and_a_computed_one_is_negative(self) -> None:
        self.assertEqual(model.format_double(model.strtod(b"nan")), "nan")
        self.assertEqual(model.format_double(model.strtod(b"-nan")), "-nan")
        self.assertEqual(model.format_double(model.quotient(0, 0)), "-nan")

    def test_a_cap_turns_infinity_and_nan_into_one(self) -> None:
        self.assertEqual(model.capped(0.25), 0.25)
        self.assertEqual(model.capped(model.quotient(1, 0)), 1.0)
        self.assertEqual(model.capped(model.quotient(0, 0)), 1.0)

    def test_percentages(self) -> None:
        self.assertEqual(model.format_double(model.percentage(1, 3)), "33.3333")
        # 100 * 42949673 is 4 above 2^32.
        self.assertEqual(model.percentage(42949673, 4), 1.0)
        # 16777217 is 16777216 in single precision.
        self.assertEqual(model.percentage(16777217, 16777217), 1677721700 / 16777216)


class ItemsetTest(unittest.TestCase):
    """Itemsets that repeat an item."""

    def test_repeated_items_count_one_by_one(self) -> None:
        self.assertEqual(model.difference((1, 2, 2), (2,)), (1, 2))
        self.assertEqual(model.intersection((1, 2, 2, 3), (2, 2, 2)), (2, 2))
        self.assertFalse(model.contained((2, 2), (1, 2, 3)))
        self.assertTrue(model.contained((), (1,)))


class ReaderTest(unittest.TestCase):
    """Records of the class file."""

    def test_items_support_and_essentials(self) -> None:
        self.assertEqual(read_one(b"3 1 2\t5\t 1, 2 3,\n"),
                         (True, (1, 2, 3), 5, [(1,), (2, 3)]))

    def test_an_essential_as_large_as_its_itemset_is_dropped(self) -> None:
        self.assertEqual(read_one(b"1 4\t3\t 4 1,\n"), (True, (1, 4), 3, []))

    def test_repeated_items_are_kept(self) -> None:
        self.assertEqual(read_one(b"2 2 1\t4\t 2,\n"), (True, (1, 2, 2), 4, [(2,)]))

    def test_a_comma_without_items_stores_an_empty_essential(self) -> None:
        self.assertEqual(read_one(b"1 2\t6\t ,\n"), (True, (1, 2), 6, [()]))

    def test_a_support_that_does_not_start_with_a_digit_is_zero(self) -> None:
        self.assertEqual(read_one(b"1 2\t 5,\n"), (True, (1, 2), 0, [()]))

    def test_an_empty_item_part_is_read_to_its_end_but_not_valid(self) -> None:
        reader = ClassReader(b"\t5\t 1,\n2\t3\t 2,\n")
        self.assertFalse(reader.read_record().valid)
        self.assertEqual(reader.read_record(), (True, (2,), 3, []))

    def test_the_character_after_a_comma_is_lost(self) -> None:
        self.assertEqual(read_one(b"1 2 3\t5\t 1,2,\n"), (True, (1, 2, 3), 5, [(1,), ()]))

    def test_a_carriage_return_after_the_last_comma_joins_the_next_line(self) -> None:
        self.assertEqual(read_one(b"1 2\t5\t 1,\r\n3\t4\t 3,\n"),
                         (True, (1, 2), 5, [(1,), (3, 3, 4)]))

    def test_numbers_wrap_at_32_bits(self) -> None:
        self.assertEqual(read_one(b"4294967297 3\t4294967296\t 3,\n"), (True, (1, 3), 0, [(3,)]))

    def test_other_bytes_separate_items(self) -> None:
        self.assertEqual(read_one(b"-7\xb2,5\n6x8\t2\t 5,\n"), (True, (5, 6, 7, 8), 2, [(5,)]))

    def test_the_end_of_the_file_ends_a_record_anywhere(self) -> None:
        self.assertEqual(read_one(b"1 2"), (True, (1, 2), 0, [()]))
        self.assertEqual(read_one(b"1 2\t34"), (True, (1, 2), 34, [()]))
        self.assertEqual(read_one(b"1 2\t3\t 1"), (True, (1, 2), 3, [(1,)]))
        self.assertEqual(read_one(b"1 2\t3\t 1,"), (True, (1, 2), 3, [(1,)]))

    def test_only_a_call_after_the_end_of_the_file_reports_it(self) -> None:
        reader = ClassReader(b"1\t2\t 1,\n")
        self.assertTrue(reader.read_record().valid)
        self.assertFalse(reader.read_record().valid)
        self.assertEqual(reader.messages, [])
        self.assertFalse(reader.read_record().valid)
        self.assertEqual(reader.messages, ["fin de fichier\n"])

    def test_classes_are_ordered_and_the_last_of_two_equal_ones_counts(self) -> None:
        classes = model.load_classes(ClassReader(b"2\t1\t 2,\n3 1\t2\t 1,\n1 2\t3\t 1,\n"
                                                 b"1\t4\t 1,\n1 3\t5\t 3,\n"))
        self.assertEqual(list(classes), [(1,), (1, 2), (1, 3), (2,)])
        self.assertEqual(classes[1, 3], ClassData(5, [(3,)]))

    def test_loading_stops_at_a_class_without_items(self) -> None:
        classes = model.load_classes(ClassReader(b"1\t2\t 1,\n\t5\t 1,\n2\t3\t 2,\n"))
        self.assertEqual(list(classes), [(1,)])


class LatticeTest(unittest.TestCase):
    """Entries and their successors."""

    def test_entries_go_by_size_then_by_itemset(self) -> None:
        classes = {itemset: ClassData() for itemset in ((1, 2), (1, 3), (2,), (4, 5, 6))}
        self.assertEqual([entry.itemset for entry in model.load_entries(classes)],
                         [(2,), (1, 2), (1, 3), (4, 5, 6)])

    def test_itemsets_of_one_size_have_no_successors(self) -> None:
        self.assertEqual(linked((1, 2), (1, 3)), {(1, 2): [], (1, 3): []})

    def test_a_chain(self) -> None:
        self.assertEqual(linked((1,), (1, 2), (1, 2, 3)),
                         {(1,): [], (1, 2): [(1,)], (1, 2, 3): [(1, 2)]})

    def test_successors_keep_the_order_of_the_frontier(self) -> None:
        self.assertEqual(linked((1,), (2,), (1, 2))[1, 2], [(1,), (2,)])

    def test_only_immediate_subsets_are_listed(self) -> None:
        successors = linked((1,), (2,), (1, 2), (2, 3, 4), (1, 2, 3, 4))
        self.assertEqual(successors[2, 3, 4], [(2,)])
        self.assertEqual(successors[1, 2, 3, 4], [(1, 2), (2, 3, 4)])

    def test_a_subset_off_the_frontier_is_reached_by_descent(self) -> None:
        successors = linked((1,), (1, 2), (1, 3))
        self.assertEqual(successors, {(1,): [], (1, 2): [(1,)], (1, 3): [(1,)]})

    def test_an_entry_that_shares_nothing_has_no_successors(self) -> None:
        self.assertEqual(linked((1,), (2, 3))[2, 3], [])

    def test_a_new_successor_replaces_its_subsets_and_a_subset_is_refused(self) -> None:
        successors = [(1,), (5,), (2,)]
        self.assertTrue(model.insert_successor((1, 2), successors))
        self.assertEqual(successors, [(5,), (1, 2)])
        self.assertFalse(model.insert_successor((2,), successors))
        self.assertFalse(model.insert_successor((1, 2), successors))
        self.assertEqual(successors, [(5,), (1, 2)])

    def test_lattice_file_of_one_class_without_essentials(self) -> None:
        self.assertEqual(run(b"7\t3\t 7,\n").files["Lattice_t_1.txt"],
                         b"\t\t\t**************************************************\n"
                         b"\t\t\t**************************************************\n"
                         b"\t\t\t****                                          ****\n"
                         b"\t\t\t****      Disjunctive Search Space\t\t****\n"
                         b"\t\t\t****                                          ****\n"
                         b"\t\t\t****                                          ****\n"
                         b"\t\t\t**************************************************\n"
                         b"\t\t\t**************************************************\n"
                         b"******************************\n"
                         b"**   Equivalence class:  **\n"
                         b"**                          **\n"
                         b"******************************\n"
                         b"DCP:  7 \n"
                         b"Disjonctive support: 3\n"
                         b"les essentiels:  VIDE\n"
                         b"les successeurs: VIDE\n"
                         b"\n")

    def test_lattice_file_block_with_essentials_and_successors(self) -> None:
        text = run(TWO_ITEMS).files["Lattice_t_1.txt"]
        self.assertTrue(text.endswith(b"DCP:  1 2 \n"
                                      b"Disjonctive support: 5\n"
                                      b"les essentiels:  1  ; 2  ; \n"
                                      b"les successeurs: 1 ;2 ;\n"
                                      b"\n"))


class DifferenceSupportTest(unittest.TestCase):
    """Supports of itemsets that need not be closed."""

    def test_a_closed_itemset_leaves_the_bounds_as_they_are(self) -> None:
        entries = lattice(((1,), 2, []), ((1, 2), 5, [(1,)]))
        self.assertEqual(model.difference_support(entries, (1, 2), 0, 9), Bounded(5, 2, 9))

    def test_bounds_that_meet(self) -> None:
        entries = lattice(((1, 2, 3), 5, [(1,)]), ((1, 2, 3, 4), 8, [(4,)]))
        self.assertEqual(model.difference_support(entries, (1, 2), 0, 9), Bounded(5, 5, 5))

    def test_bounds_that_do_not_meet(self) -> None:
        entries = lattice(((1,), 3, []), ((1, 2, 3), 5, [(3,)]))
        self.assertEqual(model.difference_support(entries, (1, 2), 0, 9), Bounded(0, 3, 5))

    def test_an_essential_of_an_overlapping_class_raises_the_lower_bound(self) -> None:
        entries = lattice(((1, 3), 4, [(3,), (1,)]))
        self.assertEqual(model.difference_support(entries, (1, 2, 4), 0, 9), Bounded(0, 4, 9))

    def test_an_essential_outside_a_smaller_class_is_tested_on_the_common_part(self) -> None:
        entries = lattice(((1, 3), 4, [(2,)]))
        self.assertEqual(model.difference_support(entries, (1, 2, 4), 0, 9), Bounded(0, 0, 9))

    def test_an_essential_outside_a_larger_class_is_tested_on_the_itemset(self) -> None:
        entries = lattice(((1, 3), 4, [(2,)]))
        self.assertEqual(model.difference_support(entries, (2,), 0, 9), Bounded(0, 4, 9))

    def test_an_empty_itemset_lowers_the_upper_bound_to_the_smallest_support(self) -> None:
        entries = lattice(((1,), 4, []), ((2,), 3, []), ((1, 2), 6, [(1,)]))
        self.assertEqual(model.difference_support(entries, (), 0, 9), Bounded(0, 0, 3))

    def test_equal_bounds_return_after_the_first_entry_only(self) -> None:
        entries = lattice(((1,), 4, []), ((2,), 3, []))
        self.assertEqual(model.difference_support(entries, (2,), 5, 5), Bounded(5, 5, 5))
        self.assertEqual(model.difference_support([], (2,), 5, 5), Bounded(0, 5, 5))


class RuleTextTest(unittest.TestCase):
    """Rule lines."""

    def test_sides(self) -> None:
        self.assertEqual(model.rule_line(model.plain((1, 4, 7)), model.negated((2, 3))),
                         "1 v 4 v 7-->not(2)not(3)\n")
        self.assertEqual(model.rule_line(model.negated(()), model.plain((1, 2))),
                         "empty_set-->1 v 2\n")


class IntraNodeTest(Rules):
    """Rules within one class."""

    def test_known_support(self) -> None:
        self.intra(1, 0.0, 5).known_support((3, 5), 2, (2,), 4)
        self.assertEqual(without_header(self.out.intra_exact),
                         b"3 v 5-->2\nsupport:2\n\n"
                         b"not(2)-->not(3)not(5)\nsupport:1\n\n")
        self.assertEqual(without_header(self.out.intra_approx),
                         b"2-->3 v 5\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(3)not(5)-->not(2)\nsupport:1\n\nconfiance:0.333333\n" + SEPARATOR
                         + b"2-->not(3)not(5)\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(3)not(5)-->2\nsupport:2\n\nconfiance:0.666667\n" + SEPARATOR)
        self.assertEqual(self.out.totals, [2, 4, 0])

    def test_an_approximative_r212_is_counted_with_r111(self) -> None:
        self.intra(1, 0.0, 5).known_support((3, 5), 2, (2,), 4)
        self.assert_counts({("R112", EXACT): 1, ("R111", APPRO): 2, ("R211", EXACT): 1,
                            ("R311", APPRO): 1, ("R412", APPRO): 1})

    def test_equal_supports_make_exact_rules(self) -> None:
        self.intra(1, 0.0, 6).known_support((2,), 5, (1,), 5)
        self.assert_counts({("R112", EXACT): 1, ("R111", EXACT): 1, ("R211", EXACT): 1,
                            ("R212", EXACT): 1})

    def test_a_rest_in_every_transaction_skips_the_rules_with_its_absence(self) -> None:
        self.intra(0, 0.1, 5).known_support((2,), 5, (1,), 5)
        self.assert_counts({("R112", EXACT): 1, ("R111", EXACT): 1, ("R211", EXACT): 1})

    def test_a_rest_below_minsupp_leaves_the_other_forms(self) -> None:
        self.intra(2, 0.0, 10).known_support((2,), 1, (1,), 4)
        self.assert_counts({("R211", EXACT): 1, ("R111", APPRO): 1, ("R311", APPRO): 1,
                            ("R412", APPRO): 1})

    def test_thresholds_of_zero_let_the_zero_support_pair_through(self) -> None:
        self.intra(0, 0.0, 5).known_support((3,), 5, (2,), 5)
        self.assertEqual(without_header(self.out.intra_approx),
                         b"2-->not(3)\nsupport:0\n\nconfiance:0\n" + SEPARATOR
                         + b"not(2)-->3\nsupport:0\n\nconfiance:0\n" + SEPARATOR
                         + b"3-->not(2)\nsupport:0\n\nconfiance:0\n" + SEPARATOR)
        self.assert_counts({("R112", EXACT): 1, ("R111", EXACT): 1, ("R211", EXACT): 1,
                            ("R311", APPRO): 1, ("R411", APPRO): 1, ("R312", APPRO): 1})

    def test_equal_to_the_thresholds_passes(self) -> None:
        self.intra(2, 0.5, 4).known_support((3,), 2, (2,), 4)
        self.assert_counts({("R112", EXACT): 1, ("R111", APPRO): 1, ("R311", APPRO): 1,
                            ("R412", EXACT): 1})

    def test_bounded_support(self) -> None:
        self.intra(1, 0.0, 10).bounded_support((3,), (1, 2), 6, 2, 4)
        self.assertEqual(without_header(self.out.intra_exact),
                         b"3-->1 v 2\n2< support <4\n"
                         b"not(1)not(2)-->not(3)\nsupport:4\n\n")
        self.assertEqual(without_header(self.out.intra_approx),
                         b"1 v 2-->3\n2< support <4\n"
                         b"0.333333< confiance <0.666667\n" + SEPARATOR
                         + b"not(3)-->not(1)not(2)\nsupport:4\n\n"
                         b"0.5< confiance <0.666667\n" + SEPARATOR
                         + b"1 v 2-->not(3)\n2< support <4\n"
                         b"0.333333< confiance <0.666667\n" + SEPARATOR
                         + b"not(3)-->1 v 2\n2< support <4\n"
                         b"0.25< confiance <0.666667\n" + SEPARATOR)
        self.assert_counts({("R112", APPED): 1, ("R111", APPED): 1, ("R211", EXACT): 1,
                            ("R212", APPED): 1, ("R311", APPED): 1, ("R412", APPED): 1})

    def test_an_upper_bound_of_all_transactions_skips_the_rules_with_its_absence(self) -> None:
        self.intra(1, 0.0, 6).bounded_support((3,), (1,), 5, 2, 6)
        # 5 - 6 wraps, so the third group is entered.
        self.assert_counts({("R112", APPED): 1, ("R111", APPED): 1, ("R211", EXACT): 1,
                            ("R311", APPED): 1})

    def test_the_bounds_of_the_last_form_are_clamped(self) -> None:
        self.intra(0, 0.1, 7).bounded_support((3,), (1,), 6, 1, 5)
        self.assertIn(b"not(3)-->1\n1< support <5\n0.166667< confiance <1\n",
                      without_header(self.out.intra_approx))

    def test_a_lower_bound_that_is_not_a_number_is_clamped_to_zero(self) -> None:
        self.intra(0, 0.0, 7).bounded_support((3,), (1,), 6, 7, 6)
        self.assertIn(b"not(3)-->1\n0< support <4294967295\n0< confiance <1\n",
                      without_header(self.out.intra_approx))


class InterNodeTest(Rules):
    """Rules between neighbouring classes."""

    def test_known_support(self) -> None:
        self.inter(1, 0.0, 10).known_support((2,), 5, (1,), 4, 7, True)
        self.assertEqual(without_header(self.out.inter_exact), b"")
        self.assertEqual(without_header(self.out.inter_approx),
                         b"2-->1\nsupport:2\n\nconfiance:0.4\n" + SEPARATOR
                         + b"1-->2\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(1)-->not(2)\nsupport:3\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(2)-->not(1)\nsupport:3\n\nconfiance:0.6\n" + SEPARATOR
                         + b"1-->not(2)\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(2)-->1\nsupport:2\n\nconfiance:0.4\n" + SEPARATOR
                         + b"not(1)-->2\nsupport:3\n\nconfiance:0.5\n" + SEPARATOR
                         + b"2-->not(1)\nsupport:3\n\nconfiance:0.6\n" + SEPARATOR)
        self.assert_counts({(form, APPRO): 1 for form in (
            "R132", "R131", "R231", "R232", "R331", "R432", "R431", "R332")})

    def test_a_written_r232_moves_the_later_forms_of_an_essential(self) -> None:
        self.inter(1, 0.0, 10).known_support((2,), 5, (1,), 4, 7, False)
        self.assert_counts({(form, APPRO): 1 for form in (
            "R122", "R121", "R221", "R232", "R331", "R432", "R431", "R332")})

    def test_without_r232_the_forms_of_an_essential_stay(self) -> None:
        self.inter(2, 0.0, 8).known_support((2,), 5, (1,), 4, 7, False)
        self.assert_counts({(form, APPRO): 1 for form in (
            "R122", "R121", "R321", "R421", "R422", "R322")})

    def test_a_rest_in_every_transaction_keeps_the_forms_of_an_essential(self) -> None:
        self.inter(0, 0.0, 7).known_support((2,), 7, (1,), 4, 7, False)
        self.assert_counts({("R122", APPRO): 1, ("R121", EXACT): 1, ("R221", APPRO): 1,
                            ("R321", APPRO): 1, ("R422", EXACT): 1, ("R322", APPRO): 1})

    def test_the_first_form_is_never_exact(self) -> None:
        self.inter(1, 0.9, 9).known_support((2,), 3, (1,), 5, 5, True)
        self.assertEqual(without_header(self.out.inter_approx),
                         b"2-->1\nsupport:3\n\nconfiance:1\n" + SEPARATOR
                         + b"not(1)-->not(2)\nsupport:4\n\nconfiance:1\n" + SEPARATOR)

    def test_bounded_support(self) -> None:
        self.inter(1, 0.0, 10).bounded_support((2,), (1,), 4, 7, 3, 5, True)
        self.assertEqual(without_header(self.out.inter_exact), b"")
        self.assertEqual(without_header(self.out.inter_approx),
                         b"not(1)-->not(2)\nsupport:3\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(2)-->not(1)\nsupport:3\n\n"
                         b"0.428571< confiance <0.6\n" + SEPARATOR
                         + b"1-->not(2)\n2< support <4\n0.5< confiance <1\n" + SEPARATOR
                         + b"not(2)-->1\n2< support <4\n0.285714< confiance <0.4\n" + SEPARATOR
                         + b"not(1)-->2\nsupport:3\n\nconfiance:0.5\n" + SEPARATOR
                         + b"2-->not(1)\nsupport:3\n\n0.6< confiance <1\n" + SEPARATOR)
        self.assert_counts({("R231", APPRO): 1, ("R232", APPED): 1, ("R331", APPED): 1,
                            ("R432", APPED): 1, ("R431", APPRO): 1, ("R332", APPED): 1})

    def test_bounded_support_of_an_essential(self) -> None:
        self.inter(1, 0.0, 10).bounded_support((2,), (1,), 6, 7, 3, 5, False)
        self.assertIn(b"2-->1\n2< support <4\n0.4< confiance <1\n" + SEPARATOR
                      + b"1-->2\n2< support <4\n0.333333< confiance <0.666667\n" + SEPARATOR,
                      without_header(self.out.inter_approx))
        self.assert_counts({("R122", APPED): 1, ("R121", APPED): 1, ("R221", APPRO): 1,
                            ("R222", APPED): 1, ("R321", APPED): 1, ("R421", APPED): 1,
                            ("R422", APPRO): 1, ("R322", APPED): 1})

    def test_an_exact_rule_among_bounded_ones_is_counted_with_its_reverse(self) -> None:
        self.inter(1, 0.7, 7).bounded_support((2,), (1,), 4, 7, 3, 5, False)
        self.assertEqual(without_header(self.out.inter_exact), b"not(1)-->2\nsupport:3\n\n")
        self.assert_counts({("R322", EXACT): 1})

    def test_an_upper_bound_of_all_transactions_skips_the_rules_with_its_absence(self) -> None:
        self.inter(0, 0.0, 7).bounded_support((2,), (1,), 4, 7, 5, 7, True)
        self.assert_counts({("R132", APPED): 1, ("R131", APPED): 1, ("R231", APPRO): 1,
                            ("R331", APPED): 1, ("R332", EXACT): 1, ("R332", APPED): 1})

    def test_a_confidence_bound_that_is_not_a_number_is_printed(self) -> None:
        self.inter(0, 0.0, 9).bounded_support((2,), (1,), 4, 4, 0, 3, True)
        self.assertIn(b"2-->not(1)\nsupport:0\n\n0< confiance <-nan\n",
                      without_header(self.out.inter_approx))

    def test_nothing_out_of_nothing_is_capped_before_it_is_compared(self) -> None:
        self.inter(0, 1.0, 9).bounded_support((2,), (1,), 0, 0, 0, 0, True)
        self.assertIn(b"1-->not(2)\n0< support <0\n1< confiance <1\n",
                      without_header(self.out.inter_approx))


class DriverTest(unittest.TestCase):
    """Which pairs are tried, from the class file to the rule files."""

    def test_two_items(self) -> None:
        files = run(TWO_ITEMS).files
        self.assertEqual(files["intra_exact_t_1_0.5.txt"],
                         b"\t\t\t******************************************\n"
                         b"\t\t\t***   Regles exaxtes intra noeud      ***\n"
                         b"\t\t\t******************************************\n"
                         b"2-->1\nsupport:5\n\n"
                         b"1-->2\nsupport:5\n\n"
                         b"not(1)-->not(2)\nsupport:1\n\n"
                         b"not(2)-->not(1)\nsupport:1\n\n")
        self.assertEqual(files["intra_approx_t_1_0.5.txt"],
                         b"\t\t\t******************************************\n"
                         b"\t\t\t*** Regles approximatives intra noeud  ***\n"
                         b"\t\t\t******************************************\n")
        self.assertEqual(files["inter_exact_t_1_0.5.txt"],
                         b"\t\t\t******************************************\n"
                         b"\t\t\t***   Regles exactes inter noeuds     ***\n"
                         b"\t\t\t******************************************\n")
        self.assertEqual(files["inter_approx_t_1_0.5.txt"],
                         b"\t\t\t******************************************\n"
                         b"\t\t\t*** Regles approximatives inter noeuds ***\n"
                         b"\t\t\t******************************************\n"
                         b"2-->1\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"1-->2\nsupport:2\n\nconfiance:0.666667\n" + SEPARATOR
                         + b"not(2)-->not(1)\nsupport:1\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(2)-->1\nsupport:1\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(1)-->2\nsupport:2\n\nconfiance:0.666667\n" + SEPARATOR
                         + b"2-->not(1)\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR)

    def test_console(self) -> None:
        result = run(TWO_ITEMS)
        self.assertEqual(result.stdout,
                         BANNER
                         + b"Minimum support threshold = 1\n"
                         b"Minimum confiance threshold = 0.5\n"
                         b"\n"
                         b"DCI loaded\n"
                         b" hash_table loaded\n"
                         b" Lattice built\n"
                         b" Lattice written\n"
                         b" Size of the map: 3\n"
                         b" Closed itemsets processed\n"
                         b" Rules generted \n"
                         b"Number of exact rules: 4\n"
                         b"Number of approximative rules: 6\n"
                         b"Number of approximated rules: 0\n"
                         b"x=4   y=6  z=0\n"
                         b"Execution ended successfully!!!\n"
                         b"Time spent by Building Lattice step = *\n"
                         b"Time spent by KOR Deriver step = *\n"
                         b"Time spent by Disjunctive Lattice Builder = *\n")
        self.assertEqual((result.stderr, result.status), (b"", 0))

    def test_two_essentials_that_are_not_each_others_rest_are_both_tried(self) -> None:
        files = run(b"1 2 3\t5\t 1, 2,\n", minconf="1", n="5").files
        self.assertEqual(without_header_bytes(files["intra_exact_t_1_1.txt"]),
                         b"2 v 3-->1\nsupport:5\n\n"
                         b"1-->2 v 3\nsupport:5\n\n"
                         b"1 v 3-->2\nsupport:5\n\n"
                         b"2-->1 v 3\nsupport:5\n\n")

    def test_three_essentials_are_tried_without_pairing(self) -> None:
        files = run(b"1 2 3 4\t5\t 1 2, 3 4, 1,\n", minconf="1", n="5").files
        self.assertEqual(without_header_bytes(files["intra_exact_t_1_1.txt"]),
                         b"3 v 4-->1 v 2\nsupport:5\n\n"
                         b"1 v 2-->3 v 4\nsupport:5\n\n"
                         b"1 v 2-->3 v 4\nsupport:5\n\n"
                         b"3 v 4-->1 v 2\nsupport:5\n\n"
                         b"2 v 3 v 4-->1\nsupport:5\n\n"
                         b"1-->2 v 3 v 4\nsupport:5\n\n")

    def test_a_single_successor_comes_before_its_essentials(self) -> None:
        # The rests 3, 2 v 3 and 1 v 3 have supports from 2 to 6, from 4 to 6, and 6.
        files = run(b"1 2\t4\t 1, 2,\n1 2 3\t6\t 1 3,\n", minconf="0.4", n="8").files
        self.assertEqual(without_header_bytes(files["inter_exact_t_1_0.4.txt"]),
                         b"2-->1 v 3\nsupport:4\n\n"
                         b"not(1)not(3)-->not(2)\nsupport:2\n\n")
        self.assertEqual(without_header_bytes(files["inter_approx_t_1_0.4.txt"]),
                         b"not(1)not(2)-->not(3)\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(1)not(2)-->3\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"1-->2 v 3\n2< support <4\n0.5< confiance <1\n" + SEPARATOR
                         + b"not(1)-->not(2)not(3)\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(2)not(3)-->not(1)\nsupport:2\n\n0.5< confiance <1\n" + SEPARATOR
                         + b"not(1)-->2 v 3\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"1 v 3-->2\nsupport:4\n\nconfiance:0.666667\n" + SEPARATOR
                         + b"not(2)-->not(1)not(3)\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(2)-->1 v 3\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR)

    def test_two_successors_that_are_not_each_others_rest_are_both_tried(self) -> None:
        # The rests 3 and 1 have supports from 2 to 5 and from 1 to 4.
        files = run(b"1 2\t4\t 1 2,\n2 3\t5\t 2 3,\n1 2 3\t6\t 1 2 3,\n", n="8").files
        self.assertEqual(without_header_bytes(files["inter_approx_t_1_0.5.txt"]),
                         b"not(1)not(2)-->not(3)\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(1)not(2)-->3\nsupport:2\n\nconfiance:0.5\n" + SEPARATOR
                         + b"not(2)not(3)-->not(1)\nsupport:2\n\nconfiance:0.666667\n" + SEPARATOR)


class ReportTest(unittest.TestCase):
    """The rule-count file."""

    def test_totals_and_percentages(self) -> None:
        self.assertTrue(run(TWO_ITEMS).files["number_rules_t_1_0.5.txt"].startswith(
            b"Number of exact rules: 4\n"
            b"Number of appro rules: 6\n"
            b"Number of apped rules: 0\n"
            b"\n"
            b"Total number of rules: 10\n"
            b"\n"
            b"\n"
            b"Percentage of exact rules: 40 %\n"
            b"Percentage of appro rules: 60 %\n"
            b"Percentage of apped rules: 0 %\n"
            b"\n"
            b"\n"
            b"---------------------------------------------------------------\n"
            b"\n"
            b"Form 1: \n"
            b"\n"
            b"Number  of  rules of Form 1: exact  of the form  R111 = e1-->(f1-e1): \t\t\t\t1\n"
            b"Number  of  rules of Form 1: exact  of the form  R112 = (f1-e1)-->e1: \t\t\t\t1\n"
            b"Number  of  rules of Form 1: exact  of the form  R121 = e1-->(f2-e1): \t\t\t\t0\n"
            b"Number  of  rules of Form 1: exact  of the form  R122 = (f2-e1)-->e1: \t\t\t\t0\n"
            b"Number  of  rules of Form 1: exact  of the form  R131 = f1-->(f2-f1): \t\t\t\t0\n"
            b"Number  of  rules of Form 1: exact  of the form  R132 = (f2-f1)-->f1: \t\t\t\t0\n"
            b"\n"
            b"Total number  of  rules of Form 1: 2\n"
            b"\n"
            b"\n"
            b"Form 2: \n"
            b"\n"
            b"Number  of  rules of Form 2: exact  of the form  R211 = not(e1)-->not(f1-e1): "
            b"\t\t\t1\n"))

    def test_end_of_the_report(self) -> None:
        self.assertTrue(run(TWO_ITEMS).files["number_rules_t_1_0.5.txt"].endswith(
            b"Number  of  rules of Form 4: apped  of the form  R432 = not(f2-f1)-->f1: \t\t\t0\n"
            b"\n"
            b"Total number  of  rules of Form 4: 0\n"
            b"\n"
            b"\n"
            b"\n"
            b"\n"
            b"Number of apped rules: 0\n"
            b"Number of apped rules: 0\n"
            b"\n"
            b"**********************************************************************\n"
            b"\n"))

    def test_between_two_kinds(self) -> None:
        self.assertIn(b"Number of exact rules: 4\n"
                      b"Number of exact rules: 4\n"
                      b"\n"
                      b"\n"
                      b"\n"
                      b"\n"
                      b"**********************************************************************\n"
                      b"\n"
                      b"Form 1: \n",
                      run(TWO_ITEMS).files["number_rules_t_1_0.5.txt"])

    def test_no_rules_no_percentages(self) -> None:
        self.assertTrue(
            run(TWO_ITEMS, minsupp="100").files["number_rules_t_100_0.5.txt"].startswith(
                b"Number of exact rules: 0\n"
                b"Number of appro rules: 0\n"
                b"Number of apped rules: 0\n"
                b"\n"
                b"Total number of rules: 0\n"
                b"\n"
                b"\n"
                b"---------------------------------------------------------------\n"
                b"\n"
                b"Form 1: \n"))


class CommandLineTest(unittest.TestCase):
    """Arguments, file names and endings."""

    def test_too_few_arguments(self) -> None:
        self.assertEqual(model.run(b"", ["t", "classes", "1", "0.5"]), Result(
            {}, BANNER,
            b"\n Erreur! Entrez le fichier des Inputs suivi d'un minsupp superieur ou egal a 1"
            b" et d'un minconf compris entre 0 et 1!\n", 0))

    def test_a_class_file_that_cannot_be_read(self) -> None:
        self.assertEqual(run(None), Result(
            {}, BANNER, b"\n Erreur! Le fichier entre ne peut etre lu!", 0))

    def test_further_arguments_are_ignored(self) -> None:
        self.assertEqual(model.run(TWO_ITEMS, ["t", "classes", "1", "0.5", "6", "7", "8"]),
                         run(TWO_ITEMS))

    def test_file_names_use_the_arguments_as_typed(self) -> None:
        self.assertEqual(set(model.run(TWO_ITEMS, ["mush", "c", "0300", "0.50", "6"]).files),
                         {"Lattice_mush_0300.txt",
                          "intra_exact_mush_0300_0.50.txt", "intra_approx_mush_0300_0.50.txt",
                          "inter_exact_mush_0300_0.50.txt", "inter_approx_mush_0300_0.50.txt",
                          "number_rules_mush_0300_0.50.txt"})

    def test_thresholds_are_echoed_as_converted(self) -> None:
        self.assertIn(b"Minimum support threshold = 4294967295\n"
                      b"Minimum confiance threshold = -nan\n",
                      run(TWO_ITEMS, minsupp="-1", minconf="-nan").stdout)
        self.assertIn(b"Minimum confiance threshold = 1\n", run(TWO_ITEMS, minconf="1").stdout)

    def test_an_empty_class_file_ends_with_status_2(self) -> None:
        result = run(b"")
        self.assertEqual(result.status, 2)
        self.assertEqual(result.stdout, BANNER + b"Minimum support threshold = 1\n"
                                                 b"Minimum confiance threshold = 0.5\n"
                                                 b"\n"
                                                 b"DCI loaded\n"
                                                 b" hash_table loaded\n")
        self.assertEqual(result.stderr,
                         b"Erreur: le nombre de classes doit \xef\xbf\xbdtre non null"
                         b"Arr\xef\xbf\xbdt du programme")
        self.assertEqual(list(result.files.values()), [b""] * 6)

    def test_a_file_cut_off_in_its_last_record_is_reported(self) -> None:
        self.assertIn(b"\nfin de fichier\n\nDCI loaded\n",
                      run(b"1\t3\t 1,", minconf="0.5").stdout)

    def test_a_nan_threshold_keeps_only_the_rules_without_a_confidence(self) -> None:
        result = run(TWO_ITEMS, minconf="nan")
        self.assertEqual(without_header_bytes(result.files["intra_exact_t_1_nan.txt"]),
                         b"2-->1\nsupport:5\n\nnot(1)-->not(2)\nsupport:1\n\n")
        self.assertIn(b"x=2   y=0  z=0\n", result.stdout)


class ProgramTest(unittest.TestCase):
    """The model as a program, in an empty directory."""

    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.classes = Path(scratch.name) / "classes"
        self.directory = Path(scratch.name) / "run"
        self.directory.mkdir()

    def program(self, class_file: str, data: bytes = b"") -> Result:
        """Run the program and collect what it leaves."""
        done = subprocess.run([sys.executable, MODEL_PROGRAM, "t", class_file, "1", "0.5", "6"],
                              cwd=self.directory, input=data, capture_output=True, check=False)
        files = {path.name: path.read_bytes() for path in self.directory.iterdir()}
        return Result(files, done.stdout, done.stderr, done.returncode)

    def test_a_file(self) -> None:
        self.classes.write_bytes(TWO_ITEMS)
        self.assertEqual(self.program(str(self.classes)), run(TWO_ITEMS))

    def test_an_empty_file(self) -> None:
        self.classes.write_bytes(b"")
        self.assertEqual(self.program(str(self.classes)), run(b""))

    def test_a_pipe(self) -> None:
        self.assertEqual(self.program("/dev/stdin", TWO_ITEMS), run(TWO_ITEMS))

    def test_a_directory(self) -> None:
        self.assertEqual(self.program(os.curdir), run(None))

    def test_a_missing_file(self) -> None:
        self.assertEqual(self.program("no_such_file"), run(None))


if __name__ == "__main__":
    unittest.main()
