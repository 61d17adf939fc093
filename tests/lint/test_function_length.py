import unittest

import support
import function_length


def body(lines):
    return "    step();\n" * lines


class FunctionLength(unittest.TestCase):
    def names(self, text):
        return [name for name, _, _ in function_length.functions(text)]

    def length(self, text):
        [(_, first, last)] = function_length.functions(text)
        return last - first + 1

    def test_limit_is_seventy_lines(self):
        good = "void f() {\n" + body(68) + "}\n"
        bad = "void f() {\n" + body(69) + "}\n"
        self.assertEqual(function_length.check({"a.cpp": good}), [])
        self.assertEqual(support.places(function_length.check({"a.cpp": bad})), [("a.cpp", 1)])

    def test_finding_names_function_and_length(self):
        [found] = function_length.check({"a.cpp": "int N::g() {\n" + body(80) + "}\n"})
        self.assertIn("N::g has 82 lines", found.text)

    def check_long(self, opening, closing="}"):
        text = "namespace a {\nclass B {\n" + opening + "\n" + body(90) + closing + "\n};\n}\n"
        found = function_length.check({"a.cpp": text})
        self.assertEqual(len(found), 1, opening)

    def test_every_kind_of_function_is_seen(self):
        for opening in (
            "void f() const noexcept override {",
            "B() : m_a(1), m_b{2}, Base<int>{} {",
            "explicit B(int a = {})\n : m_a(a)\n{",
            "~B() {",
            "bool operator==(const B& o) const {",
            "int operator()(int a) {",
            "int& operator[](int a) {",
            "auto operator<=>(const B&) const {",
            "B& operator=(const B& o) {",
            "template <typename T, int N = 3> requires C<T>\nauto g(T t) -> std::vector<T> {",
            "std::function<void(int)> h(std::map<int, std::pair<int, int>> m) {",
            "[[nodiscard]] static int k() {",
            "struct stat f(enum E e) {",
            "Q_OBJECT\npublic:\n  explicit B(QObject* parent) {",
            "TEST_F(Fixture, Name) {",
            "QCoro::Task<std::optional<int>> run(QString name) {",
            "operator bool() const {",
        ):
            self.check_long(opening)

    def test_long_lambda_counts_in_its_function(self):
        self.check_long("void f() {\n  g([&](int a) {", "});\n}")

    def test_long_lambda_in_a_variable(self):
        self.check_long("static inline const auto f = [](int a) {", "};")

    def test_types_namespaces_and_tables_are_no_functions(self):
        for text in (
            "namespace a::b {\n" + "int x;\n" * 90 + "}\n",
            "class alignas(8) A final : public B<int(int)> {\n" + "int x;\n" * 90 + "};\n",
            "enum class E : int {\n" + "x,\n" * 90 + "};\n",
            "const Row rows[] = {\n" + "{1, f(2)},\n" * 90 + "};\n",
            "std::vector<int> v{\n" + "1,\n" * 90 + "};\n",
            'extern "C" {\n' + "int f();\n" * 90 + "}\n",
        ):
            self.assertEqual(function_length.check({"a.cpp": text}), [], text[:40])

    def test_functions_of_a_class_count_one_by_one(self):
        text = "class A {\n" + "void f() {\n}\n" * 60 + "};\n"
        self.assertEqual(len(self.names(text)), 60)
        self.assertEqual(function_length.check({"a.cpp": text}), [])

    def test_braces_in_literals_and_comments_do_not_count(self):
        text = "void f() {\n  a('{', \"{{\", R\"(\n}\n)\"); // {\n}\nvoid g() {\n}\n"
        self.assertEqual(self.names(text), ["f", "g"])

    def test_signature_counts_from_its_first_line(self):
        self.assertEqual(self.length("\n\n// why\nvoid f(int a,\n       int b)\n{\n  a;\n}\n"), 5)

    def test_member_initialisers_with_braces(self):
        self.assertEqual(self.names("A::A(int a) : m_a{a}, m_b{[] { return 1; }()} {\n}\nvoid g() {}\n"),
                         ["A::A", "g"])


if __name__ == "__main__":
    unittest.main()
