; What is declared.
(field_definition property: (_) @name) @attribute

; What is declared by assignments at the top: exports of CommonJS that are not other names, and members.
(program (expression_statement (assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @name)
  right: [(array) (arrow_function) (await_expression) (binary_expression) (class) (false) (function_expression)
    (generator_function) (new_expression) (null) (number) (object) (parenthesized_expression) (regex) (string)
    (template_string) (ternary_expression) (true) (call_expression function: (_) @called)] @value) @declaration @binding)
  (#eq? @module "exports") (#not-eq? @called "require"))
(program (expression_statement (assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) @module property: (property_identifier) @exports)
    property: (property_identifier) @name)
  right: [(array) (arrow_function) (await_expression) (binary_expression) (class) (false) (function_expression)
    (generator_function) (new_expression) (null) (number) (object) (parenthesized_expression) (regex) (string)
    (template_string) (ternary_expression) (true) (call_expression function: (_) @called)] @value) @declaration @binding)
  (#eq? @module "module") (#eq? @exports "exports") (#not-eq? @called "require"))
(program (expression_statement (assignment_expression
  left: (member_expression property: (property_identifier) @name)
  right: [
    (arrow_function) (function_expression) (generator_function)
    (assignment_expression right: [(arrow_function) (function_expression) (generator_function)])
  ]) @declaration @binding)
  (#not-eq? @name "exports"))
(program (expression_statement (assignment_expression right: (assignment_expression
  left: (member_expression property: (property_identifier) @name)
  right: [(arrow_function) (function_expression) (generator_function)]) @declaration @binding))
  (#not-eq? @name "exports"))
(program (expression_statement (assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) property: (property_identifier) @exports)
    property: (property_identifier) @name)
  right: [(array) (await_expression) (binary_expression) (call_expression) (false) (identifier) (member_expression)
    (new_expression) (null) (number) (object) (parenthesized_expression) (regex) (string) (subscript_expression)
    (template_string) (ternary_expression) (true) (unary_expression)
    (assignment_expression right: [(array) (call_expression) (false) (identifier) (member_expression) (new_expression)
      (null) (number) (object) (parenthesized_expression) (string) (true)])]) @attribute @binding)
  (#eq? @exports "prototype"))
(program (expression_statement (assignment_expression right: (assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) property: (property_identifier) @exports)
    property: (property_identifier) @name)
  right: [(array) (call_expression) (false) (identifier) (member_expression) (new_expression)
    (null) (number) (object) (parenthesized_expression) (string) (true)]) @attribute @binding))
  (#eq? @exports "prototype"))
(program (expression_statement (assignment_expression
  left: (member_expression)
  right: [
    (arrow_function body: (_) @body) (function_expression body: (_) @body) (generator_function body: (_) @body)
  ]) @callable))
(program (expression_statement (assignment_expression left: (member_expression) right: (class body: (_) @body)) @of))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: [
    (function_expression name: (_) @name body: (_) @body) @function
    (class name: (_) @name body: (_) @body) @class
  ]
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (object (pair
    key: (property_identifier) @name
    value: [(array) (arrow_function) (await_expression) (binary_expression) (class) (false) (function_expression)
    (generator_function) (new_expression) (null) (number) (object) (parenthesized_expression) (regex) (string)
    (template_string) (ternary_expression) (true) (call_expression function: (_) @called)] @value) @declaration)
  (#eq? @module "module") (#eq? @exports "exports") (#not-eq? @called "require"))

; What a field holds.
(field_definition value: (_) @value) @of
(field_definition value: (arrow_function body: (_) @body)) @of

; What is public: the modules of CommonJS.
(call_expression function: (identifier) @module (#eq? @module "require"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (identifier) @export
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (object [
    (shorthand_property_identifier) @export
    (pair value: (identifier) @export)
  ])
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @export)
  (#eq? @module "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module)
  right: (identifier) @export
  (#eq? @module "exports"))
(assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) @module property: (property_identifier) @exports)
    property: (property_identifier) @export)
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) @module property: (property_identifier) @exports))
  right: (identifier) @export
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: [(function_expression name: (_) @export) (class name: (_) @export)]
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (object (pair key: (property_identifier) @export))
  (#eq? @module "module") (#eq? @exports "exports"))
