"""Headers that can't be read: each ends in one message with its line and what to do."""

import contextlib
import io
import os
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "..", "Host", "HeaderTool"))

import HeaderTool  # noqa: E402

HEAD = '#pragma once\n#include "T.generated.h"\n'


def class_with(members):
    return HEAD + "UCLASS()\nclass UT : public UObject\n{\n\tGENERATED_BODY()\n" + members + "\n};\n"


# (what is wrong, header, line, a part of the message)
CASES = [
    ("no include", "UCLASS()\nclass UT : public UObject {\nGENERATED_BODY()\n};\n", 2, 'add #include "T.generated.h"'),
    ("include of another header", '#include "X.generated.h"\n', 1, "belongs to another header"),
    ("include behind it", HEAD + '#include "Late.h"\nUENUM()\nenum class ET : uint8 { A };\n', 3, "must be the last"),
    ("no body", HEAD + "USTRUCT()\nstruct FT\n{\n};\n", 4, "lacks GENERATED_BODY()"),
    ("two bodies", class_with("GENERATED_BODY()"), 7, "second GENERATED_BODY"),
    ("no base", HEAD + "UCLASS()\nclass UT\n{\n};\n", 4, "no base class"),
    ("wrong prefix", HEAD + "USTRUCT()\nstruct Thing\n{\n};\n", 4, "begins with F"),
    ("unclosed class", HEAD + "UCLASS()\nclass UT : public UObject\n{\n\tGENERATED_BODY()\n", 4, "no closing '}'"),
    ("unclosed macro", HEAD + "UCLASS(Abstract", 3, "expected ','"),
    ("unclosed comment", HEAD + "\n/* never", 4, "comment has no end"),
    ("unclosed string", HEAD + 'UCLASS(meta=(A="x', 3, "literal has no end"),
    ("unclosed condition", HEAD + "#if WITH_EDITOR\n", 4, "has no #endif"),
    ("stray endif", HEAD + "#endif\n", 3, "#endif without an #if"),
    ("unknown specifier", class_with("UPROPERTY(EditAnywere)\nint32 A;"), 7, "did you mean 'EditAnywhere'"),
    ("specifier with value", class_with("UPROPERTY(Transient=1)\nint32 A;"), 7, "takes no value"),
    ("specifier without value", class_with("UPROPERTY(Category)\nint32 A;"), 7, "needs a value"),
    ("defaultconfig without a file", HEAD + "UCLASS(DefaultConfig)\nclass UT : public UObject {};", 4, "config=Name"),
    ("two members", class_with("UPROPERTY()\nint32 A, B;"), 8, "declares one member"),
    ("static member", class_with("UPROPERTY()\nstatic int32 A;"), 8, "static member"),
    ("property before function", class_with("UPROPERTY()\nint32 A();"), 8, "use UFUNCTION"),
    ("function before property", class_with("UFUNCTION()\nint32 A;"), 8, "use UPROPERTY"),
    ("object by value", class_with("UPROPERTY()\nUObject A;"), 8, "TObjectPtr<UObject>"),
    ("pointer to a number", class_with("UPROPERTY()\nint32* A;"), 8, "only pointers to objects"),
    ("reference", class_with("UPROPERTY()\nFString& A;"), 8, "reference can't be a UPROPERTY"),
    ("shared pointer", class_with("UPROPERTY()\nTSharedPtr<FA> A;"), 8, "TObjectPtr"),
    ("nested containers", class_with("UPROPERTY()\nTMap<int32, TArray<int32>> A;"), 8, "into a USTRUCT"),
    ("key without hash", class_with("UPROPERTY()\nTSet<FText> A;"), 8, "can't be the key"),
    ("unsized type", class_with("UPROPERTY()\nunsigned A;"), 8, "use uint32"),
    ("unknown type", class_with("UPROPERTY()\nstd::string A;"), 8, "can't be reflected"),
    ("wide bit field", class_with("UPROPERTY()\nint64 A : 3;"), 8, "needs the type uint8"),
    ("private Blueprint access", class_with("UPROPERTY(BlueprintReadOnly)\nint32 A;"), 8, "AllowPrivateAccess"),
    ("assignable number", class_with("public:\nUPROPERTY(BlueprintAssignable)\nint32 A;"), 9, "no multicast delegate"),
    ("overload", class_with("UFUNCTION()\nvoid A();\nUFUNCTION()\nvoid A(int32 B);"), 10, "overloads"),
    ("twice the same property", class_with("UPROPERTY()\nint32 A;\nUPROPERTY()\nint32 A;"), 10, "two properties"),
    ("nameless parameter", class_with("UFUNCTION()\nvoid A(int32);"), 8, "has no name"),
    ("default no script can read", class_with("UFUNCTION()\nvoid A(int32 B = Compute());"), 8, "can't be told to scripts"),
    ("pure without result", class_with("UFUNCTION(BlueprintPure)\nvoid A() const;"), 8, "gives nothing back"),
    ("static event", class_with("UFUNCTION(BlueprintNativeEvent)\nstatic void A();"), 7, "can't be static"),
    ("function without end", class_with("UFUNCTION()\nvoid A()"), 8, "neither ';' nor a body"),
    ("condition", class_with("#if MY_FEATURE\nUPROPERTY()\nint32 A;\n#endif"), 8, "inside '#if MY_FEATURE'"),
    ("type in a namespace", HEAD + "namespace N\n{\nUENUM()\nenum class E : uint8 { A };\n}\n", 5, "to file level"),
    ("type in a type", class_with("USTRUCT()\nstruct FInner { GENERATED_BODY() };"), 7, "to file level"),
    ("member outside a type", HEAD + "class F\n{\nUPROPERTY()\nint32 A;\n};\nUPROPERTY()\nint32 B;", 8, "outside"),
    ("plain enumeration by value", HEAD + "UENUM()\nenum EOld : int { A };\nUSTRUCT()\nstruct FT\n{\nGENERATED_BODY()\n"
     "UPROPERTY()\nEOld Old;\n};\n", 10, "TEnumAsByte<EOld>"),
    ("enumeration without type", HEAD + "UENUM()\nenum EOld { A };\n", 4, "needs a type"),
    ("empty enumeration", HEAD + "UENUM()\nenum class ET : uint8 {};\n", 4, "no enumerators"),
    ("delegate parameters", HEAD + "DECLARE_DYNAMIC_DELEGATE_TwoParams(FA, int32, B);\n", 3, "expected ','"),
    ("struct with a function", HEAD + "USTRUCT()\nstruct FT\n{\nGENERATED_BODY()\nUFUNCTION()\nvoid A();\n};", 7, "struct can't"),
    ("same type twice", HEAD + "UENUM()\nenum class ET : uint8 { A };\nUENUM()\nenum class ET : uint8 { A };\n", 6, "rename one"),
]


class ErrorTest(unittest.TestCase):
    def test_each_broken_header_is_refused_with_its_line_and_a_way_out(self):
        for what, text, line, message in CASES:
            with self.subTest(what), tempfile.TemporaryDirectory() as folder:
                path = os.path.join(folder, "T.h")
                with open(path, "w", encoding="utf-8") as file:
                    file.write(text)
                errors = io.StringIO()
                with contextlib.redirect_stderr(errors):
                    status = HeaderTool.main(["--module", "M", "--out", os.path.join(folder, "out"), path])
                self.assertEqual(status, 1, "the header was accepted")
                self.assertTrue(errors.getvalue().startswith(f"{path}:{line}: error: "), errors.getvalue())
                self.assertIn(message, errors.getvalue())
                self.assertFalse(os.path.exists(os.path.join(folder, "out")), "a refused header left output behind")

    def test_every_truncation_of_a_good_header_ends_in_a_result_or_a_message(self):
        with open(os.path.join(HERE, "Inputs", "Weapon.h"), encoding="utf-8") as file:
            text = file.read()
        from Errors import HeaderError
        from Parser import Parser

        refused = 0
        for length in range(0, len(text), 7):
            try:
                Parser("Weapon.h", text[:length]).run()
            except HeaderError:
                refused += 1
        self.assertGreater(refused, len(text) // 7 // 2)

    def test_a_missing_or_undecodable_file_is_named(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "Binary.h")
            with open(path, "wb") as file:
                file.write(b"\xff\xfe\x00")
            for name in (path, os.path.join(folder, "Missing.h")):
                errors = io.StringIO()
                with contextlib.redirect_stderr(errors):
                    self.assertEqual(HeaderTool.main(["--module", "M", "--out", folder, name]), 1)
                self.assertIn(f"{name}:1: error: ", errors.getvalue())


if __name__ == "__main__":
    unittest.main()
