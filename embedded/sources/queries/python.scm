; What is declared.
(function_definition name: (_) @name body: (_) @body) @declaration
(class_definition name: (_) @name body: (_) @body) @declaration
(assignment left: (identifier) @name) @variable
(assignment left: (pattern_list (identifier) @name)) @variable
(assignment left: (tuple_pattern (identifier) @name)) @variable
(assignment left: (attribute object: (identifier) @self attribute: (identifier) @name) (#eq? @self "self")) @declaration
(type_alias_statement . (type (identifier) @name)) @variable

; What belongs to the declaration in it.
(decorated_definition) @wrapper

; What a name holds.
(assignment right: (_) @value) @of
(assignment right: (lambda)) @callable

; The docstring.
(function_definition body: (block . (expression_statement (string) @docstring))) @of
(class_definition body: (block . (expression_statement (string) @docstring))) @of

; What is public.
(assignment left: (identifier) @list (#eq? @list "__all__"))
(assignment left: (identifier) @list right: [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
    (binary_operator (list (string (string_content) @export)))
  ] (#eq? @list "__all__"))
(augmented_assignment left: (identifier) @list right: [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
  ] (#eq? @list "__all__"))
(call
  function: (attribute object: (identifier) @list)
  arguments: (argument_list [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
    (string (string_content) @export)
  ])
  (#eq? @list "__all__"))

(function_definition body: (_) @local)

(comment) @comment
