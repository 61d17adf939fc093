import unittest

import support  # noqa: F401
import cpp_text


class Blanking(unittest.TestCase):
    def test_keeps_offsets_and_lines(self):
        text = 'a /* x\ny */ b // c\n"d\\"e" \'f\' g\n'
        out = cpp_text.without_comments_and_literals(text)
        self.assertEqual(len(text), len(out))
        self.assertEqual([at for at, c in enumerate(text) if c == "\n"],
                         [at for at, c in enumerate(out) if c == "\n"])
        self.assertEqual(out.split(), ["a", "b", '"', '"', "'", "'", "g"])

    def test_comment_signs_in_strings_are_no_comments(self):
        out = cpp_text.without_comments_and_literals('f("// {"); g("/*"); h();')
        self.assertIn("h();", out)
        self.assertNotIn("{", out)

    def test_raw_string_ends_at_its_own_delimiter(self):
        out = cpp_text.without_comments_and_literals('x(R"sql(a)" } // )sql"); y();')
        self.assertIn("y();", out)
        self.assertNotIn("}", out)

    def test_prefixed_raw_string(self):
        self.assertNotIn("{", cpp_text.without_comments_and_literals('f(u8R"x(")" {)x");'))

    def test_digit_separator_opens_no_literal(self):
        self.assertIn("}", cpp_text.without_comments_and_literals("int f() { return 1'000'0; }"))

    def test_brace_as_character(self):
        out = cpp_text.without_comments_and_literals("c == '{' || c == L'\\'' || c == '}'")
        self.assertNotIn("{", out)
        self.assertNotIn("}", out)

    def test_line_comment_continues_after_backslash(self):
        self.assertNotIn("{", cpp_text.without_comments_and_literals("// a \\\n { \nint b;"))

    def test_only_first_branch_of_a_conditional_counts(self):
        code = cpp_text.structure("#if A\nvoid f() {\n#else\nvoid f(int) {\n#endif\n}\n")
        self.assertEqual(code.count("{"), 1)

    def test_directives_are_blank_with_their_continuations(self):
        self.assertNotIn("{", cpp_text.structure("#define F(x) \\\n  { x\nint a;"))


if __name__ == "__main__":
    unittest.main()
