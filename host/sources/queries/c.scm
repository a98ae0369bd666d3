; What is declared.
(declaration
  declarator: [
    (identifier) @name
    (pointer_declarator declarator: [
      (identifier) @name
      (array_declarator declarator: (identifier) @name)
      (pointer_declarator declarator: (identifier) @name)
    ])
    (array_declarator declarator: [(identifier) @name (array_declarator declarator: (identifier) @name)])
    (function_declarator declarator: (parenthesized_declarator (pointer_declarator declarator: (identifier) @name)))
    (init_declarator
      declarator: [
        (identifier) @name
        (pointer_declarator declarator: [(identifier) @name (array_declarator declarator: (identifier) @name)])
        (array_declarator declarator: [(identifier) @name (array_declarator declarator: (identifier) @name)])
        (function_declarator declarator: (parenthesized_declarator (pointer_declarator declarator: (identifier) @name)))
      ]
      value: (_) @value)
  ]) @binding @variable
(function_definition
  declarator: [
    (function_declarator declarator: (identifier) @name)
    (pointer_declarator declarator: [
      (function_declarator declarator: (identifier) @name)
      (pointer_declarator declarator: (function_declarator declarator: (identifier) @name))
    ])
  ]
  body: (_) @body) @function
(declaration
  declarator: [
    (function_declarator declarator: (identifier) @name)
    (pointer_declarator declarator: (function_declarator declarator: (identifier) @name))
  ]) @function
(struct_specifier name: (type_identifier) @name body: (_) @body) @struct
(union_specifier name: (type_identifier) @name body: (_) @body) @struct
(enum_specifier name: (type_identifier) @name body: (_) @body) @enum
(enumerator name: (_) @name) @constant
(field_declaration
  declarator: [
    (field_identifier) @name
    (pointer_declarator declarator: [
      (field_identifier) @name
      (pointer_declarator declarator: (field_identifier) @name)
      (array_declarator declarator: [(field_identifier) @name (array_declarator declarator: (field_identifier) @name)])
      (function_declarator declarator: (parenthesized_declarator (pointer_declarator declarator: (field_identifier) @name)))
    ])
    (array_declarator declarator: [(field_identifier) @name (array_declarator declarator: (field_identifier) @name)])
    (function_declarator declarator: (parenthesized_declarator (pointer_declarator declarator: (field_identifier) @name)))
  ]) @attribute
(type_definition
  declarator: [
    (type_identifier) @name
    (array_declarator declarator: (type_identifier) @name)
    (function_declarator declarator: [
      (type_identifier) @name
      (parenthesized_declarator (pointer_declarator declarator: (type_identifier) @name))
    ])
    (pointer_declarator declarator: [
      (type_identifier) @name
      (function_declarator declarator: (parenthesized_declarator (pointer_declarator declarator: (type_identifier) @name)))
    ])
  ]) @type
(preproc_def name: (_) @name) @constant
(preproc_function_def name: (_) @name) @function

; What a variable holds, and which of them stay: a pointer to what is const may point elsewhere.
(declaration declarator: (init_declarator value: (_) @value)) @of
(declaration
  (type_qualifier) @qualifier
  declarator: [(identifier) (array_declarator) (init_declarator declarator: [(identifier) (array_declarator)])]
  (#eq? @qualifier "const")) @constant
(declaration
  declarator: [
    (pointer_declarator (type_qualifier) @qualifier)
    (init_declarator declarator: (pointer_declarator (type_qualifier) @qualifier))
  ]
  (#eq? @qualifier "const")) @constant

; What is hidden.
(function_definition (storage_class_specifier) @static (#eq? @static "static")) @hidden
(declaration (storage_class_specifier) @static (#eq? @static "static")) @hidden

(function_definition body: (_) @local @enclosed)

(comment) @comment
